// Smaller documents that play the same, as judged by the plain forms of composing and decoding.
#include "size/optimise.h"

#include <algorithm>
#include <numeric>

#include "editing/timing.h"
#include "gif/lzw_encoder.h"
#include "platform/faults.h"
#include "size/plays_alike.h"
#include "tests/support/failing_new.h"
#include "tests/support/literal_codec.h"
#include "tests/support/literal_stage.h"
#include "tests/support/operations.h"
#include "tests/support/row_document.h"
#include "tests/support/test_blocks.h"

namespace {

struct SeenMoment {
    Pixels canvas;
    uint64_t delay = 0, played = 0;
    bool operator==(const SeenMoment&) const = default;
};

// What is seen, and for how long.
std::vector<SeenMoment> TimelineOf(const BlockList& list) {
    Animation animation;
    EXPECT_TRUE(animation.Open(list, Texts::kLeftOut));
    const std::vector<Pixels> canvases = ComposeLiterally(animation);
    std::vector<SeenMoment> timeline;
    for (size_t i = 0; i < canvases.size(); ++i) {
        const uint16_t delay = animation.Frames()[i].delay;
        if (timeline.empty() || timeline.back().canvas != canvases[i]) timeline.push_back({canvases[i]});
        timeline.back().delay += delay;
        timeline.back().played += delay < 2 ? 10 : delay;
    }
    return timeline;
}

// A random document that is nothing to be left alone: its first image lies on the screen, and all players know its
// disposals.
Bytes RandomFile(std::mt19937& random, int images) {
    BlockList list = RandomAnimation(random, images);
    for (Block& block : list.All()) {
        if (block.kind != kControlBlock) continue;
        block.descriptor[0] = kControlDescriptorBytes - 2;
        if ((block.descriptor[1] & kControlDisposal) == kDisposePreviousOfOld << kControlDisposalShift)
            block.descriptor[1] ^= kControlDisposal;
    }
    for (Block& block : list.All()) {
        if (block.kind != kImageBlock) continue;
        ImageFields fields = GetImageFields(block);
        if (fields.width == 0) {
            block = MakeImage(1, 1, 1, kHasPalette);
            fields = GetImageFields(block);
        }
        fields.left = fields.top = 0;
        PutImageFields(&block, fields);
        HeaderFields screen = GetHeaderFields(list.blocks[0]);
        screen.screenWidth = std::max(screen.screenWidth, fields.width);
        screen.screenHeight = std::max(screen.screenHeight, fields.height);
        PutHeaderFields(&list.blocks[0], screen);
        break;
    }
    return SavedBytes(list);
}

struct Optimised {
    OptimiseResult result;
    BlockList list;  // of kSmaller
};

Optimised Optimise(const LoadedGif& gif, const OptimiseOptions& options = {}) {
    Optimised made;
    made.result = Optimise(gif, gif.report, options, nullptr, &made.list);
    return made;
}

// A document of frames of one row on a screen of that width, with the global colours (i, 2i, 3i).
struct Strip : GifBytes {
    explicit Strip(int width) { Header("GIF89a", width, 1, 0xF2); }
    Strip& Control(int delay, int packed = 0, int transparent = 0) {
        Add({0x21, 0xF9, 4, packed}).Word(delay).Add({transparent, 0});
        return *this;
    }
    Strip& Row(int left, const std::vector<uint32_t>& pixels, int packed = 0) {
        BlockList list;
        Block image = MakeImage(static_cast<int>(pixels.size()), 1, 3);
        image.data = MakeRow(4, pixels);
        File file;
        EXPECT_TRUE(file.CreateMemory());
        EXPECT_TRUE(EncodeImageData(file, image, Manner::kWhole));
        Add({0x2C}).Word(left).Word(0).Word(static_cast<int>(pixels.size())).Word(1).Add({packed});
        Add(Bytes(file.Written().begin(), file.Written().end()));
        return *this;
    }
    Bytes WithTrailer() const {
        Bytes bytes = *this;
        bytes.push_back(0x3B);
        return bytes;
    }
    LoadedGif Load() const { return LoadedGif(WithTrailer(), Manner::kWhole); }
};

}  // namespace

TEST(Optimise, PlaysTheSameAndIsNeverLarger) {
    std::mt19937 random(1);
    int smaller = 0;
    for (int round = 0; round < 300; ++round) {
        const LoadedGif gif(RandomFile(random, 1 + static_cast<int>(random() % 9)), Manner::kWhole);
        const OptimiseOptions options = {static_cast<Effort>(round % 3), round % 5 == 0, 1};
        const Optimised made = Optimise(gif, options);
        ASSERT_TRUE(made.result == OptimiseResult::kSmaller || made.result == OptimiseResult::kNothingGained) << round;
        if (made.result != OptimiseResult::kSmaller) continue;
        ++smaller;
        ASSERT_LT(SavedBytes(made.list).size(), SavedBytes(gif).size()) << round;
        ASSERT_EQ(TimelineOf(made.list), TimelineOf(gif)) << round;
        if (options.keepFrames) {
            ASSERT_EQ(DelaysOf(made.list), DelaysOf(gif)) << round;
        }
    }
    EXPECT_EQ(smaller, 300);
}

// Frames of a few rectangles each, which have all changed in the next one.
static Bytes ChangingRectangles(std::mt19937& random, int frames) {
    constexpr int kSide = 16;
    GifBytes bytes = GifBytes().Header("GIF89a", kSide, kSide, 0xF2);
    for (int frame = 0; frame < frames; ++frame) {
        Block image = MakeImage(kSide, kSide, 3);
        {
            ImageWriteLock bitmap(&image.data);
            for (int i = 0; i < 3; ++i) {
                const int left = static_cast<int>(random() % 12), top = static_cast<int>(random() % 12);
                const auto colour = static_cast<uint32_t>(1 + random() % 7);
                for (int at = 0; at < 12; ++at) SetImagePixel(bitmap, left + at % 4, top + at / 4, colour);
            }
        }
        File file;
        EXPECT_TRUE(file.CreateMemory());
        EXPECT_TRUE(EncodeImageData(file, image, Manner::kWhole));
        bytes.Control(4).ImageHead(kSide, kSide, 0);
        bytes.Add(Bytes(file.Written().begin(), file.Written().end()));
    }
    return bytes.Add({0x3B});
}

TEST(Optimise, MoreEffortTakesNoMoreThanAHurry) {
    std::mt19937 random(11);
    for (int round = 0; round < 40; ++round) {
        const LoadedGif gif(ChangingRectangles(random, 4), Manner::kWhole);
        const auto bytes = [&gif](Effort effort) {
            const Optimised made = Optimise(gif, {effort});
            return SavedBytes(made.result == OptimiseResult::kSmaller ? made.list : gif).size();
        };
        const size_t hurried = bytes(Effort::kFast);
        for (const Effort effort : {Effort::kNormal, Effort::kMax}) EXPECT_LE(bytes(effort), hurried) << round;
    }
}

TEST(Optimise, GivesTheSameBytesWithAnyNumberOfThreads) {
    std::mt19937 random(2);
    for (int round = 0; round < 40; ++round) {
        const bool clears = round % 4 < 2;
        const LoadedGif gif(clears ? RandomFile(random, 12) : ChangingRectangles(random, 150), Manner::kWhole);
        const Effort effort = round % 2 ? Effort::kNormal : Effort::kFast;
        const Optimised one = Optimise(gif, {effort, false, 1});
        ASSERT_EQ(one.result, OptimiseResult::kSmaller);
        for (size_t threads : {2u, 5u})
            EXPECT_EQ(SavedBytes(Optimise(gif, {effort, false, threads}).list), SavedBytes(one.list));
    }
}

TEST(Optimise, MergesFramesWhereNoPlayerTellsTheDifference) {
    constexpr int kWaits = kControlUserInput;
    const std::tuple<const char*, Bytes, std::vector<uint32_t>> cases[] = {
        {"equal frames", Strip(3).Control(3).Row(0, {1, 2, 3}).Control(4).Row(0, {1, 2, 3}).WithTrailer(), {7}},
        {"a frame that draws nothing new",
         Strip(3).Control(3).Row(0, {1, 2, 3}).Control(4).Row(1, {2}).Control(5).Row(1, {4}).WithTrailer(),
         {7, 5}},
        {"a short delay counts for more",
         Strip(3).Control(0).Row(0, {1, 2, 3}).Control(5).Row(0, {1, 2, 3}).WithTrailer(),
         {0, 5}},
        {"two of them", Strip(3).Control(1).Row(0, {1, 2, 3}).Control(1).Row(0, {1, 2, 3}).WithTrailer(), {1, 1}},
        {"as long as a delay may be",
         Strip(3).Control(65533).Row(0, {1, 2, 3}).Control(2).Row(0, {1, 2, 3}).WithTrailer(),
         {65535}},
        {"longer", Strip(3).Control(65533).Row(0, {1, 2, 3}).Control(3).Row(0, {1, 2, 3}).WithTrailer(), {65533, 3}},
        {"one waits for the user",
         Strip(3).Control(3, kWaits).Row(0, {1, 2, 3}).Control(4).Row(0, {1, 2, 3}).WithTrailer(),
         {3, 4}},
        {"the other waits",
         Strip(3).Control(3).Row(0, {1, 2, 3}).Control(4, kWaits).Row(0, {1, 2, 3}).WithTrailer(),
         {3, 4}},
    };
    for (const auto& [name, bytes, delays] : cases) {
        const LoadedGif gif(bytes, Manner::kWhole);
        const Optimised made = Optimise(gif);
        const BlockList& kept = made.result == OptimiseResult::kSmaller ? made.list : gif;
        EXPECT_EQ(DelaysOf(kept), delays) << name;
        EXPECT_EQ(TimelineOf(kept), TimelineOf(gif)) << name;
    }
}

TEST(Optimise, LeavesAloneWhatPlayersDisagreeAbout) {
    GifBytes missing = Strip(3).Control(3).Row(0, {1, 2, 3});
    missing.Add({0x2C}).Word(0).Word(0).Word(3).Word(1).Add({0, 3, 2, 0x08, 0x0B, 0});
    GifBytes text = Strip(3).Row(0, {1, 2, 3}).Control(9);
    text.Extension(0x01, "\x0C" + std::string(12, '\1'), "text");
    const std::tuple<Bytes, const char*> cases[] = {
        {GifBytes().Header("GIF89a", 3, 1, 0xF2).Add({0x3B}), "it has no frames"},
        {Strip(3).Row(1, {1, 2, 3}).Row(0, {1, 1, 1}).WithTrailer(),
         "its first image reaches beyond the screen, which players show in several ways"},
        {Strip(0).Row(1, {1, 2, 3}).Row(0, {1, 1, 1}).WithTrailer(), "its screen has no size"},
        {missing.Add({0x3B}), "it is damaged"},
        {Strip(3).Row(0, {1, 2, 3}).Row(0, {1, 2, 3}), "it is damaged"},
        {GifBytes().Header("GIF89a", 65535, 65535, 0xF2).SmallImage().Add({0x3B}), "its screen is too large"},
        {Strip(3).Row(0, {1, 2, 3}).Control(5, 4 << 2).Row(0, {1, 1}).Row(1, {2}).WithTrailer(),
         "a frame has disposal 4, which players take in several ways"},
        {text.SmallImage().Add({0x3B}),
         "a text stands between a control and its image, which players take in several ways"},
    };
    for (const auto& [bytes, why] : cases) {
        const LoadedGif gif(bytes, Manner::kWhole);
        BlockList made;
        OptimiseNotes notes;
        EXPECT_EQ(Optimise(gif, gif.report, {}, nullptr, &made, &notes), OptimiseResult::kLeftAlone) << why;
        EXPECT_STREQ(notes.leftAlone, why);
    }
}

TEST(Optimise, TellsHowFarItIs) {
    class Listener : public OptimiseWatch {
    public:
        void OnPlanned(size_t done, size_t count) override { Tell("p", done, count); }
        void OnFrame(size_t done, size_t count) override { Tell("f", done, count); }
        std::string told;

    private:
        void Tell(const char* what, size_t done, size_t count) {
            told += what + std::to_string(done) + "/" + std::to_string(count) + " ";
        }
    } listener;
    Strip strip(3);
    strip.Control(5).Row(0, {1, 2, 3}).Control(5).Row(0, {1, 2, 3}).Control(5).Row(0, {3, 2, 1}).Control(5).Row(1, {5});
    const LoadedGif gif = strip.Load();
    BlockList made;
    ASSERT_EQ(Optimise(gif, gif.report, {Effort::kNormal, false, 1}, &listener, &made), OptimiseResult::kSmaller);
    EXPECT_EQ(listener.told, "p2/4 p3/4 p4/4 f1/3 f2/3 f3/3 ");
}

TEST(Optimise, KeepsWhatIsNoFrame) {
    Strip strip(3);
    strip.Loop(7).Comment("before");
    strip.Control(5).Row(0, {1, 2, 3}).Comment("between").Extension(0xFF, "\x0BXXXXXXXX1.0", "data");
    strip.Control(5).Row(0, {1, 2, 3}).Comment("behind").Add({0x3B, 1, 2, 3});
    const LoadedGif gif(strip, Manner::kWhole);
    const Optimised made = Optimise(gif);
    ASSERT_EQ(made.result, OptimiseResult::kSmaller);
    EXPECT_EQ(KindsOf(gif), "1763265326");
    EXPECT_EQ(KindsOf(made.list), "17632656");
    EXPECT_EQ(TextOf(BlockAt(made.list, 2)), "before");
    EXPECT_EQ(made.list.after.bytes, 4u);
}

// Dots (row, colour, delay) on a screen so large that it is looked at in pieces.
static RowDocument LargeAnimation(const std::vector<std::tuple<int, uint32_t, int>>& dots) {
    RowDocument document(2000, 300);
    for (const auto& [y, colour, delay] : dots)
        document.Control(kDisposeLeave, kNoTransparency, delay).Row(5, {colour}, y);
    return document;
}

TEST(PlaysAlike, LooksAtAllPieces) {
    const BlockList first = LargeAnimation({{0, 1, 5}, {299, 2, 5}, {150, 3, 0}, {0, 1, 5}});
    const std::tuple<const char*, std::vector<std::tuple<int, uint32_t, int>>, Likeness> cases[] = {
        {"itself", {{0, 1, 5}, {299, 2, 5}, {150, 3, 0}, {0, 1, 5}}, Likeness::kAlike},
        {"without what nothing shows", {{0, 1, 5}, {299, 2, 5}, {150, 3, 15}}, Likeness::kDifferent},
        {"a moment in two", {{0, 1, 3}, {0, 1, 2}, {299, 2, 5}, {150, 3, 0}, {0, 1, 5}}, Likeness::kAlike},
        {"the last row", {{0, 1, 5}, {299, 1, 5}, {150, 3, 0}, {0, 1, 5}}, Likeness::kDifferent},
        {"one in the middle", {{0, 1, 5}, {299, 2, 5}, {151, 3, 0}, {0, 1, 5}}, Likeness::kDifferent},
        {"the time of one piece", {{0, 1, 5}, {299, 2, 6}, {150, 3, 0}, {0, 1, 4}}, Likeness::kDifferent},
        {"a delay that is played alike", {{0, 1, 5}, {299, 2, 5}, {150, 3, 10}, {0, 1, 5}}, Likeness::kDifferent},
    };
    std::atomic<bool> stop = false;
    for (const size_t threads : {1u, 3u})
        for (const auto& [name, dots, likeness] : cases)
            EXPECT_EQ(PlaysAlike(first, LargeAnimation(dots), {threads, &stop}), likeness) << name;
    stop = true;
    EXPECT_EQ(PlaysAlike(first, first, {2, &stop}), Likeness::kStopped);
}

TEST(Optimise, GivesUpWhenItIsStopped) {
    Strip strip(4);
    const LoadedGif gif = strip.Row(0, {7, 5, 7, 5}).Control(2).Row(1, {1}).Load();
    std::atomic<bool> stop = true;
    OptimiseOptions options;
    BlockList made;
    options.stop = &stop;
    EXPECT_EQ(Optimise(gif, gif.report, options, nullptr, &made), OptimiseResult::kStopped);
    EXPECT_EQ(made.count, 0u);
    stop = false;
    EXPECT_EQ(Optimise(gif, gif.report, options, nullptr, &made), OptimiseResult::kSmaller);

    // And behind the first frame.
    class Stopper : public OptimiseWatch {
    public:
        explicit Stopper(std::atomic<bool>* stop) : stop_(stop) {}
        void OnPlanned(size_t, size_t) override {}
        void OnFrame(size_t, size_t) override { *stop_ = true; }

    private:
        std::atomic<bool>* stop_;
    } stopper(&stop);
    EXPECT_EQ(Optimise(gif, gif.report, options, &stopper, &made), OptimiseResult::kStopped);
}

TEST(Optimise, KeepsTheBackgroundsColour) {
    Strip strip(4);
    strip[11] = 6;
    const LoadedGif gif = strip.Row(0, {7, 5, 7, 5}).Control(2).Row(1, {1}).Load();
    const Optimised made = Optimise(gif);
    ASSERT_EQ(made.result, OptimiseResult::kSmaller);
    const Block& header = made.list.blocks[0];
    EXPECT_EQ(header.palette[GetHeaderFields(header).backgroundIndex], (RgbTriple{6, 12, 18}));
}

TEST(Optimise, ABackgroundOfNoPaletteIsNotBeyondTheNewOne) {
    GifBytes bytes = GifBytes().Header("GIF89a", 2, 2, 0x70);
    bytes[11] = 40;
    const LoadedGif gif(bytes.SmallImage(0x84).SmallImage(0x84).Add({0x3B}), Manner::kWhole);
    const Optimised made = Optimise(gif);
    ASSERT_EQ(made.result, OptimiseResult::kSmaller);
    const Block& header = made.list.blocks[0];
    ASSERT_GT(PaletteOfHeader(header).depth, 0);
    EXPECT_LT(GetHeaderFields(header).backgroundIndex, 1 << PaletteOfHeader(header).depth);
}

TEST(Optimise, TextsKeepTheirPalette) {
    Strip strip(3);
    strip.Row(0, {7, 5, 7}).Extension(0x01, "\x0C" + std::string(10, '\1') + "\3\4", "text");
    const LoadedGif gif = strip.Control(5).Row(0, {7, 5, 7}).Control(5).Row(0, {7, 5, 7}).Load();
    ASSERT_EQ(KindsOf(gif), "1243232");
    const Optimised made = Optimise(gif);
    ASSERT_EQ(made.result, OptimiseResult::kSmaller);
    EXPECT_EQ(KindsOf(made.list), "12432");
    EXPECT_TRUE(SameContent(made.list.blocks[0], gif.blocks[0]));
}

TEST(Optimise, MemoryThatEndsIsNoCrash) {
    std::mt19937 random(3);
    const LoadedGif gif(RandomFile(random, 4), Manner::kWhole);
    const std::vector<SeenMoment> timeline = TimelineOf(gif);
    for (long* counter : {&faults.allocationsUntilFailure, &faults.locksUntilFailure, &failingNew.untilFailure}) {
        int done = 0;
        for (long until = 0; done == 0 && until < 20000; until += 1 + until / 16) {
            *counter = until;
            const Optimised made = Optimise(gif, {Effort::kFast, false, 1});
            const bool isOver = *counter >= 0;
            *counter = -1;
            if (made.result != OptimiseResult::kSmaller) continue;
            EXPECT_EQ(TimelineOf(made.list), timeline) << until;
            done += isOver;
        }
        EXPECT_EQ(done, 1);
    }
}

TEST(PlaysAlike, TellsWhatPlayersShow) {
    const auto one = [] { return Strip(3).Control(5).Row(0, {1, 2, 3}); };
    GifBytes looped = one();
    looped.Loop(7).Add({0x3B});
    const LoadedGif first = one().Load();
    const std::tuple<const char*, Bytes, Likeness> cases[] = {
        {"itself", one().WithTrailer(), Likeness::kAlike},
        {"in two parts", Strip(3).Control(3).Row(0, {1, 2, 3}).Control(2).Row(0, {1, 2}).WithTrailer(),
         Likeness::kAlike},
        {"a part that is stretched", Strip(3).Control(4).Row(0, {1, 2, 3}).Control(1).Row(0, {1, 2}).WithTrailer(),
         Likeness::kDifferent},
        {"another delay", Strip(3).Control(6).Row(0, {1, 2, 3}).WithTrailer(), Likeness::kDifferent},
        {"another colour", Strip(3).Control(5).Row(0, {1, 2, 4}).WithTrailer(), Likeness::kDifferent},
        {"transparent instead", Strip(3).Control(5).Row(0, {1, 2}).WithTrailer(), Likeness::kDifferent},
        {"transparent as nothing", Strip(3).Control(5, 1, 4).Row(0, {1, 2, 3}).WithTrailer(), Likeness::kAlike},
        {"one more moment", one().Control(5).Row(0, {4}).WithTrailer(), Likeness::kDifferent},
        {"another screen", Strip(4).Control(5).Row(0, {1, 2, 3}).WithTrailer(), Likeness::kDifferent},
        {"a loop", looped, Likeness::kDifferent},
    };
    for (const auto& [name, bytes, likeness] : cases) {
        const LoadedGif other(bytes, Manner::kWhole);
        EXPECT_EQ(PlaysAlike(first, other), likeness) << name;
        EXPECT_EQ(PlaysAlike(other, first), likeness) << name;
    }
}

// The largest difference of a colour that documents of the same length show at the same time; 256 where only one is
// transparent.
static int LargestDifference(const BlockList& a, const BlockList& b) {
    const std::vector<SeenMoment> one = TimelineOf(a), other = TimelineOf(b);
    uint64_t end = 0, otherEnd = 0;
    int largest = 0;
    for (size_t i = 0, j = 0; i < one.size() && j < other.size();) {
        for (size_t at = 0; at < one[i].canvas.size(); ++at) {
            const uint32_t p = one[i].canvas[at], q = other[j].canvas[at];
            if ((p >> 24) != (q >> 24)) return 256;
            for (int shift : {0, 8, 16})
                largest = std::max(largest,
                                   std::abs(static_cast<int>(p >> shift & 255) - static_cast<int>(q >> shift & 255)));
        }
        const uint64_t iEnd = end + one[i].played, jEnd = otherEnd + other[j].played;
        if (iEnd <= jEnd) {
            end = iEnd;
            ++i;
        }
        if (jEnd <= iEnd) {
            otherEnd = jEnd;
            ++j;
        }
    }
    return largest;
}

TEST(Optimise, LosesNoMoreThanAllowed) {
    std::mt19937 random(5);
    size_t lossless = 0, lossy = 0;
    for (int round = 0; round < 120; ++round) {
        const LoadedGif gif(RandomFile(random, 1 + static_cast<int>(random() % 9)), Manner::kWhole);
        OptimiseOptions options = {static_cast<Effort>(round % 2), round % 5 == 0, 1};
        const size_t exact = SavedBytes(Optimise(gif, options).list).size();
        lossless += exact;
        options.lossy = 1 + round * 2;
        BlockList made, taken;
        OptimiseNotes notes, takenNotes;
        ASSERT_EQ(Optimise(gif, gif.report, options, nullptr, &made, &notes), OptimiseResult::kSmaller) << round;
        lossy += SavedBytes(made).size();
        ASSERT_EQ(OptimiseWithin(gif, gif.report, options, nullptr, &taken, &takenNotes), OptimiseResult::kSmaller);
        ASSERT_EQ(SavedBytes(taken).size(), std::min(exact, SavedBytes(made).size())) << round;
        ASSERT_EQ(takenNotes.loss.largest, exact <= SavedBytes(made).size() ? 0 : notes.loss.largest) << round;
        ASSERT_LE(notes.loss.largest, options.lossy);
        ASSERT_EQ(LargestDifference(gif, made), notes.loss.largest) << round;
        ASSERT_LE(notes.loss.mean, notes.loss.largest);
    }
    EXPECT_LT(lossy, lossless);
}

TEST(PlaysNearly, KeepsToTheBoundAndTheTime) {
    // Colour i is (i, 2i, 3i): neighbours are 3 apart.
    const LoadedGif first = Strip(2).Control(5).Row(0, {1, 2}).Control(5).Row(0, {2, 2}).Load();
    const std::tuple<const char*, Bytes, int, Likeness, int> cases[] = {
        {"near enough", Strip(2).Control(5).Row(0, {1, 3}).Control(5).Row(0, {2, 2}).WithTrailer(), 3, Likeness::kAlike,
         3},
        {"too far", Strip(2).Control(5).Row(0, {1, 3}).Control(5).Row(0, {2, 2}).WithTrailer(), 2, Likeness::kDifferent,
         0},
        {"a change given up", Strip(2).Control(10).Row(0, {1, 2}).WithTrailer(), 3, Likeness::kAlike, 3},
        {"and too far", Strip(2).Control(10).Row(0, {4, 2}).WithTrailer(), 6, Likeness::kDifferent, 0},
        {"too short", Strip(2).Control(9).Row(0, {1, 2}).WithTrailer(), 3, Likeness::kDifferent, 0},
        {"a change at another time", Strip(2).Control(4).Row(0, {1, 2}).Control(6).Row(0, {2, 2}).WithTrailer(), 3,
         Likeness::kAlike, 3},
        {"transparent instead", Strip(2).Control(10).Row(0, {1}).WithTrailer(), 255, Likeness::kDifferent, 0},
    };
    for (const auto& [name, bytes, most, likeness, largest] : cases) {
        Loss loss;
        EXPECT_EQ(PlaysNearly(first, LoadedGif(bytes, Manner::kWhole), most, &loss), likeness) << name;
        EXPECT_EQ(loss.largest, largest) << name;
    }
}
