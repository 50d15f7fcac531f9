#include "editing/animation_build.h"

#include <algorithm>
#include <numeric>

#include "gif/first_image.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "imaging/standard_palette.h"
#include "platform/faults.h"
#include "tests/support/picture_files.h"
#include "tests/support/random_images.h"
#include "tests/support/scripted_answers.h"
#include "tests/support/test_blocks.h"

namespace {

constexpr PaletteMatching kAllMatchings[] = {PaletteMatching::kSuperPalette, PaletteMatching::kFirstPalette,
                                             PaletteMatching::kPhotorealistic, PaletteMatching::kDrawn,
                                             PaletteMatching::kSixteenColours};

class BuildAnimationTest : public testing::Test {
protected:
    // A file of random pixels, `depth` bits a pixel.
    void AddFile(int width, int height, int depth) {
        AddPicture(RandomImage(random_, width, height, BitCountForDepth(depth), Colours{}), depth);
    }
    void AddPicture(const MemoryHandle& image, int depth) {
        files_.push_back(folder_.Path(std::to_string(files_.size()) + ".gif"));
        WritePicture(files_.back(), image, depth);
    }

    // The picture of the file, by the conversion that the settings stand for.
    MemoryHandle Fitted(const std::string& file, const RgbTriple* palette, int depth) const {
        const MemoryHandle source = ReadFirstImage(file)->bitmap;
        if (settings_.matching == PaletteMatching::kSuperPalette) return *RemapTrueColours(source, palette, depth);
        const bool dithered =
            settings_.matching == PaletteMatching::kPhotorealistic && GetImageInfo(source)->bitCount > 4;
        return *(dithered ? DitherImage : RemapImage)(source, palette, depth, nullptr);
    }

    BuildOutcome Build(BlockList* document) { return BuildAnimation(settings_, files_, document, answers_).outcome; }

    Random random_{4};
    TempFolder folder_;
    std::vector<std::string> files_;
    AnimationSettings settings_;
    ScriptedAnswers answers_;
};

}  // namespace

TEST_F(BuildAnimationTest, EveryMatchingGivesItsPaletteAndPixels) {
    const int sizes[][3] = {{9, 5, 5}, {4, 12, 1}, {7, 3, 4}, {30, 2, 8}, {3, 3, 2}};
    for (const auto& [width, height, depth] : sizes) AddFile(width, height, depth);
    Colours first = {};
    Result<FirstImage> firstImage = ReadFirstImage(files_[0]);
    GetImagePalette(ImageLock(firstImage->bitmap), first.data());
    for (PaletteMatching matching : kAllMatchings)
        for (bool forWeb : {false, true}) {
            SCOPED_TRACE(static_cast<int>(matching) * 10 + forWeb);
            settings_ = {forWeb, forWeb, matching, forWeb ? 4711 : kDelayOfNewBlocks};
            answers_ = {};
            BlockList document;
            ASSERT_EQ(Build(&document), BuildOutcome::kDone);
            EXPECT_EQ(answers_.told, "1/5 2/5 3/5 4/5 5/5 ");
            EXPECT_EQ(KindsOf(document), forWeb ? "173232323232" : "13232323232");

            const Block header = BlockAt(document, 0);
            const HeaderFields fields = GetHeaderFields(header);
            const bool super = matching == PaletteMatching::kSuperPalette;
            Colours palette = first;
            int depth = super ? 6 : firstImage->depth;  // all files together have fewer than 64 colours
            if (matching == PaletteMatching::kSixteenColours) StandardPalette(palette.data(), &depth, kPaletteSixteen);
            if (matching == PaletteMatching::kPhotorealistic || matching == PaletteMatching::kDrawn)
                StandardPalette(palette.data(), &depth, forWeb ? kPaletteWeb : kPaletteCube);
            if (!super) {
                EXPECT_TRUE(std::equal(palette.begin(), palette.end(), header.palette.Colours()));
            }
            EXPECT_EQ(fields.packed, kHasPalette | (depth - 1));
            EXPECT_EQ(fields.screenWidth, 30);
            EXPECT_EQ(fields.screenHeight, 12);

            uint32_t at = forWeb ? 2 : 1;
            for (const std::string& file : files_) {
                SCOPED_TRACE(at);
                EXPECT_EQ(GetControlFields(BlockAt(document, at++)).delay, forWeb ? 4711 : 1);
                const Block image = BlockAt(document, at);
                const MemoryHandle fitted = Fitted(file, header.palette, depth);
                const int bits = super ? depth : GetImageInfo(fitted)->bitCount;
                EXPECT_TRUE(SameBitmap(image.data, fitted));
                EXPECT_EQ(GetImageFields(image).packed, bits - 1);
                EXPECT_EQ(NameOf(image), file);
                EXPECT_EQ(image.position, at++);
                EXPECT_EQ(image.owner, &document);
            }
        }
}

// kQuirkSharedPaletteDarkestFirst, kQuirkDepthOfLikeColours.
// A result of one bit could only tell two colours by their luminance.
TEST_F(BuildAnimationTest, SuperPaletteKeepsFewColours) {
    const RgbTriple black = {}, white = {255, 255, 255}, red = {255, 0, 0}, blue = {0, 0, 255}, grey = {9, 9, 9};
    using List = std::vector<RgbTriple>;
    const std::tuple<List, List, int, const char*> cases[] = {
        {{black, white}, {black, white}, 1, "01"},
        {{red, blue}, {blue, red}, 2, "10"},
        {{grey, grey}, {grey, black}, 1, "00"},
        {{red, blue, white, grey}, {grey, blue, red, white}, 2, "2130"},
        {{red, blue, white, grey, {0, 90, 0}}, {grey, blue, {0, 90, 0}, red, white, black}, 3, "31402"},
    };
    for (const auto& [colours, darkestFirst, depth, pixels] : cases) {
        Colours palette = {};
        std::copy(colours.begin(), colours.end(), palette.begin());
        std::vector<uint32_t> ofEach(colours.size());
        std::iota(ofEach.begin(), ofEach.end(), 0u);
        MemoryHandle image = MakeRow(4, ofEach, palette.data());
        files_.clear();
        for (int i = 0; i < 2; ++i) AddPicture(image, 4);
        BlockList document;
        ASSERT_EQ(Build(&document), BuildOutcome::kDone);
        const Block header = BlockAt(document, 0), frame = BlockAt(document, 5);
        EXPECT_TRUE(std::equal(darkestFirst.begin(), darkestFirst.end(), header.palette.Colours())) << pixels;
        EXPECT_EQ(GetHeaderFields(header).packed & kSizeCode, depth - 1);
        EXPECT_EQ(PixelsOf(frame), pixels);
        EXPECT_FALSE(frame.palette.HasColours()) << "colours of its own";
    }
}

// Of 8 bits and of 4: dithered and remapped.
TEST_F(BuildAnimationTest, OnlyPhotorealisticConversionsAreStoppedByAClick) {
    for (int depth : {8, 4}) {
        files_.clear();
        for (int i = 0; i < 2; ++i) AddFile(3, 3, depth);
        for (PaletteMatching matching : kAllMatchings) {
            settings_.matching = matching;
            const bool stops = matching == PaletteMatching::kPhotorealistic;
            answers_ = {};
            answers_.pressAtPoll = 40000;  // in the second frame
            BlockList document;
            EXPECT_EQ(Build(&document), stops ? BuildOutcome::kStoppedByUser : BuildOutcome::kDone);
            EXPECT_EQ(answers_.polls, stops ? 40001 : 0);
        }
    }
}

TEST_F(BuildAnimationTest, FilesWithoutAnImageAreAskedAbout) {
    AddFile(3, 3, 8);
    WriteAll(folder_.Path("text"), "no picture");
    files_.insert(files_.end(), {folder_.Path("text"), folder_.Path("missing"), files_[0]});
    for (bool leavesOut : {true, false}) {
        answers_ = {};
        answers_.leavesOut = leavesOut;
        BlockList document;
        const BuildResult result = BuildAnimation(settings_, files_, &document, answers_);
        EXPECT_EQ(result.outcome, leavesOut ? BuildOutcome::kDone : BuildOutcome::kFileRefused);
        EXPECT_EQ(result.why, leavesOut ? Failure::kNone : Failure::kNotGif);
        EXPECT_EQ(result.file, leavesOut ? 3u : 1u);
        EXPECT_EQ(result.skipped, leavesOut ? (std::vector<size_t>{1, 2}) : std::vector<size_t>{});
        EXPECT_EQ(KindsOf(document), leavesOut ? "17323332" : "") << "the controls stay";
        answers_.unwelcome.resize(2);
        EXPECT_EQ(answers_.unwelcome[0], Failure::kNotGif);
        EXPECT_EQ(answers_.unwelcome[1], leavesOut ? Failure::kCantOpen : Failure::kNone);
    }
}

TEST_F(BuildAnimationTest, WithoutMemoryTheDocumentStays) {
    constexpr long kEnough = 1'000'000;
    long left = 0;
    settings_.matching = PaletteMatching::kFirstPalette;
    for (int i = 0; i < 32; ++i) AddFile(2, 2, 8);  // so many that the list has to grow
    auto blocksWithRequests = [&](long n) {
        BlockList document;
        Append(&document, OfKind(kControlBlock));
        faults.allocationsUntilFailure = n;
        EXPECT_EQ(Build(&document) == BuildOutcome::kDone, n == kEnough) << n;
        left = faults.allocationsUntilFailure;
        faults = {};
        return document.count;
    };
    EXPECT_EQ(blocksWithRequests(kEnough), 66u);
    const long wanted = kEnough - left;
    for (long n = wanted - 60; n < wanted; ++n) EXPECT_EQ(blocksWithRequests(n), 1u);
}

namespace {

constexpr uint32_t kNothing = 0x00FFFFFF;  // transparent: red, green and blue do not count

uint32_t Opaque(uint32_t number) {
    return 0xFF000000u | number;
}

// What the frame shows as red, green and blue in the low bytes, or kNothing.
std::vector<uint32_t> Shown(const BlockList& document, uint32_t image) {
    const Block control = BlockAt(document, image - 1), block = BlockAt(document, image);
    const ControlFields fields = GetControlFields(control);
    std::vector<uint32_t> shown;
    ImageLock bitmap(block.data);
    for (int y = 0; y < bitmap->height; ++y)
        for (int x = 0; x < bitmap->width; ++x) {
            const uint32_t index = GetImagePixel(bitmap, x, y);
            const RgbTriple colour = document.blocks[0].palette[index];
            const bool isClear = (fields.packed & kControlTransparent) && index == fields.transparentIndex;
            shown.push_back(
                isClear ? kNothing : Opaque(static_cast<uint32_t>(colour.blue << 16 | colour.green << 8 | colour.red)));
        }
    return shown;
}

}  // namespace

// Whether colours and pixels come from a GIF file or from a PNG file makes no difference.
TEST_F(BuildAnimationTest, NumberedPngFilesGiveWhatGifFilesGive) {
    std::vector<std::string> pngs;
    for (int depth : {1, 2, 3, 4, 5, 7, 8}) {
        const MemoryHandle image = RandomImage(random_, 20 + depth, 9, BitCountForDepth(depth), Colours{});
        AddPicture(image, depth);
        pngs.push_back(folder_.Path(std::to_string(depth) + ".png"));
        WriteNumberedPng(pngs.back(), ReadFirstImage(files_.back())->bitmap, depth);
    }
    const std::vector<std::string> gifs = files_;
    for (size_t first = 0; first < gifs.size(); first += 3)
        for (PaletteMatching matching : kAllMatchings) {
            settings_.matching = matching;
            BlockList ofGifs, ofPngs;
            files_.assign(gifs.begin() + static_cast<ptrdiff_t>(first), gifs.end());
            ASSERT_EQ(Build(&ofGifs), BuildOutcome::kDone);
            files_.assign(pngs.begin() + static_cast<ptrdiff_t>(first), pngs.end());
            ASSERT_EQ(Build(&ofPngs), BuildOutcome::kDone);
            TempFolder out;
            ASSERT_TRUE(WriteGifFile(ofGifs, out.Path("a").c_str()));
            ASSERT_TRUE(WriteGifFile(ofPngs, out.Path("b").c_str()));
            EXPECT_EQ(ReadAll(out.Path("a")), ReadAll(out.Path("b"))) << first << " " << static_cast<int>(matching);
        }
}

TEST_F(BuildAnimationTest, TransparentPixelsStayTransparentInEveryMatching) {
    const uint32_t red = Opaque(0x0000FF), green = Opaque(0x00FF00), black = Opaque(0), white = Opaque(0xFFFFFF);
    const std::vector<std::vector<uint32_t>> pictures = {
        {red, kNothing, black, white}, {green, green, red, black}, {kNothing, kNothing, kNothing, kNothing}};
    for (const auto& pixels : pictures) {
        files_.push_back(folder_.Path(std::to_string(files_.size()) + ".png"));
        WriteColouredPng(files_.back(), 2, pixels);
    }
    for (PaletteMatching matching : kAllMatchings) {
        SCOPED_TRACE(static_cast<int>(matching));
        settings_ = {true, false, matching, 5};
        BlockList document;
        ASSERT_EQ(Build(&document), BuildOutcome::kDone);
        ASSERT_EQ(KindsOf(document), "1323232");
        for (uint32_t i = 0; i < 3; ++i) {
            const ControlFields control = GetControlFields(BlockAt(document, 2 * i + 1));
            EXPECT_EQ(control.packed & kControlDisposal, 2 << kControlDisposalShift) << i;
            EXPECT_EQ(control.packed & kControlTransparent, i == 1 ? 0 : 1) << i;
            std::vector<uint32_t> shown = Shown(document, 2 * i + 2);
            ASSERT_EQ(shown.size(), 4u);
            for (size_t x = 0; x < 4; ++x) EXPECT_EQ(shown[x] == kNothing, pictures[i][x] == kNothing) << i << " " << x;
            if (matching == PaletteMatching::kSuperPalette) {
                EXPECT_EQ(shown, pictures[i]);
            }
        }
    }
}

// With 255 colours the shared palette has just room for the transparent one; dark pixels that it only comes near to
// must not find the unused entry.
TEST_F(BuildAnimationTest, ASharedPaletteLeavesRoomForTransparency) {
    for (uint32_t colours : {100u, 255u, 256u, 5000u}) {
        SCOPED_TRACE(colours);
        files_.clear();
        std::vector<uint32_t> pixels = {kNothing, kNothing};
        for (uint32_t i = 0; i < colours; ++i) pixels.push_back(Opaque(i * 3 % 40 << 16 | i * 7 % 251 << 8 | i / 251));
        pixels.resize(pixels.size() / 2 * 2, kNothing);
        for (const char* name : {"a.png", "b.png"}) {
            files_.push_back(folder_.Path(name));
            WriteColouredPng(files_.back(), 2, pixels);
        }
        BlockList document;
        ASSERT_EQ(Build(&document), BuildOutcome::kDone);
        const std::vector<uint32_t> shown = Shown(document, 5);
        ASSERT_EQ(shown.size(), pixels.size());
        for (size_t i = 0; i < pixels.size(); ++i) ASSERT_EQ(shown[i] == kNothing, pixels[i] == kNothing) << i;
        if (colours <= 255) {
            EXPECT_EQ(shown, pixels);
        }
    }
}

TEST_F(BuildAnimationTest, CentredPicturesShareTheirMiddle) {
    for (auto [width, height] : {std::pair{9, 4}, {4, 7}, {9, 7}}) AddFile(width, height, 4);
    for (bool centres : {false, true}) {
        settings_.centres = centres;
        BlockList document;
        ASSERT_EQ(Build(&document), BuildOutcome::kDone);
        const std::pair<int, int> places[] = {{0, 1}, {2, 0}, {0, 0}};
        for (uint32_t i = 0; i < 3; ++i) {
            const ImageFields image = GetImageFields(BlockAt(document, 2 * i + 3));
            EXPECT_EQ(std::pair(int{image.left}, int{image.top}), centres ? places[i] : std::pair(0, 0)) << i;
            const int disposal = GetControlFields(BlockAt(document, 2 * i + 2)).packed & kControlDisposal;
            EXPECT_EQ(disposal >> kControlDisposalShift, centres ? 2 : 0) << "what is around it shows nothing";
        }
        EXPECT_EQ(GetHeaderFields(BlockAt(document, 0)).screenWidth, 9);
        EXPECT_EQ(GetHeaderFields(BlockAt(document, 0)).screenHeight, 7);
    }
}

TEST_F(BuildAnimationTest, EveryFrameOfAnAnimatedSourceIsComposed) {
    // Two frames of 3 x 1: the second changes the middle alone.
    const GifBytes animated = GifBytes().Header("GIF89a", 3, 1, 0x81);
    GifBytes bytes = animated;
    for (int i = 0; i < 2; ++i) {
        bytes.Control(7 + i);
        bytes.Add({0x2C, static_cast<uint8_t>(i), 0, 0, 0, static_cast<uint8_t>(i ? 1 : 3), 0, 1, 0, 0});
        bytes.Add(i ? Bytes{2, 2, 0x5C, 0x01, 0} : Bytes{2, 2, 0x84, 0x51, 0});
    }
    files_ = {folder_.Path("animated.gif"), folder_.Path("still.png")};
    WriteAll(files_[0], bytes.Add({0x3B}));
    WriteColouredPng(files_[1], 3, {Opaque(1), Opaque(2), Opaque(3)});
    settings_.taken = FramesTaken::kAll;
    settings_.delayHundredths = 50;
    for (bool keeps : {true, false}) {
        settings_.keepsSourceDelays = keeps;
        BlockList document;
        ASSERT_EQ(Build(&document), BuildOutcome::kDone);
        ASSERT_EQ(KindsOf(document), "17323232");
        const int delays[] = {7, 8, 50};
        for (uint32_t i = 0; i < 3; ++i)
            EXPECT_EQ(GetControlFields(BlockAt(document, 2 * i + 2)).delay, keeps ? delays[i] : 50) << i;
        std::vector<uint32_t> first = Shown(document, 3), second = Shown(document, 5);
        ASSERT_EQ(first.size(), 3u);
        ASSERT_EQ(second.size(), 3u) << "all of the canvas";
        EXPECT_EQ(first[0], second[0]);
        EXPECT_NE(first[1], second[1]);
        EXPECT_EQ(first[2], second[2]);
    }
}

TEST(DelayOfFrame, EachWayOfTiming) {
    AnimationSettings settings;
    auto delays = [&](size_t frames) {
        std::vector<int> all;
        for (size_t i = 0; i < frames; ++i) all.push_back(DelayOfFrame(settings, i, SourceFrame::kNoDelay));
        return all;
    };
    EXPECT_EQ(delays(2), (std::vector{kDelayOfNewBlocks, kDelayOfNewBlocks}));
    settings.delays = {10, 20, 5};
    EXPECT_EQ(delays(5), (std::vector{10, 20, 5, 10, 20}));
    settings.framesInThousandSeconds = 30'000;
    EXPECT_EQ(delays(6), (std::vector{3, 4, 3, 3, 4, 3}));
    settings.framesInThousandSeconds = 23'976;
    const std::vector<int> film = delays(24'000);
    EXPECT_EQ(std::accumulate(film.begin(), film.end(), 0), 100'100) << "in the long run none is lost";
    settings.framesInThousandSeconds = 10;
    EXPECT_EQ(delays(1), (std::vector{10'000}));
    settings.keepsSourceDelays = true;
    EXPECT_EQ(DelayOfFrame(settings, 0, 7), 7);
}
