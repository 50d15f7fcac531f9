#include "animation/stage.h"

#include <algorithm>
#include <numeric>

#include "platform/faults.h"
#include "tests/support/literal_stage.h"
#include "tests/support/row_document.h"

namespace {

Pixels PixelsOf(const Stage& stage) {
    const CanvasView& canvas = stage.Canvas();
    return {canvas.pixels, canvas.Row(canvas.top + canvas.height)};
}

// Whether nothing outside of `area` differs between the canvases.
bool DiffersWithin(const Pixels& a, const Pixels& b, int width, const Rectangle& area) {
    for (size_t i = 0; i < a.size(); ++i) {
        const int x = static_cast<int>(i) % width, y = static_cast<int>(i) / width;
        if (a[i] != b[i] && Common(area, {x, y, x + 1, y + 1}).IsEmpty()) return false;
    }
    return true;
}

}  // namespace

TEST(Stage, DrawsByTheRulesOfBrowsers) {
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"one image on an empty canvas", RowsOf(RowDocument(5).Row(1, {1, 2})), ".12.."},
        {"an image stays", RowsOf(RowDocument(4).Row(0, {1, 1}).Row(1, {2, 2})), "11.. 122."},
        {"disposal 1 stays", RowsOf(RowDocument(4).Control(1).Row(0, {1, 1}).Row(3, {2})), "11.. 11.2"},
        {"disposal 2 clears its own rectangle",
         RowsOf(RowDocument(4).Row(0, {1, 1, 1, 1}).Control(2).Row(1, {2}).Row(3, {3})), "1111 1211 1.13"},
        {"disposal 2 clears what was transparent, too",
         RowsOf(RowDocument(3).Row(0, {1, 1, 1}).Control(2, 0).Row(0, {0, 2, 0}).Row(2, {3})), "111 121 ..3"},
        {"disposal 3 brings back", RowsOf(RowDocument(3).Row(0, {1, 1, 1}).Control(3).Row(1, {2, 2}).Row(0, {4})),
         "111 122 411"},
        {"disposal 3 twice",
         RowsOf(RowDocument(3).Row(0, {1}).Control(3).Row(1, {2}).Control(3).Row(2, {3}).Row(0, {4})),
         "1.. 12. 1.3 4.."},
        {"a first frame with disposal 3", RowsOf(RowDocument(2).Control(3).Row(0, {1}).Row(1, {2})), "1. .2"},
        {"4 counts as 3", RowsOf(RowDocument(2).Row(0, {1, 1}).Control(4).Row(0, {2}).Row(1, {3})), "11 21 13"},
        {"5 to 7 do nothing",
         RowsOf(RowDocument(3).Control(5).Row(0, {1}).Control(6).Row(1, {2}).Control(7).Row(2, {3}).Row(0, {4})),
         "1.. 12. 123 423"},
        {"transparency", RowsOf(RowDocument(3).Row(0, {1, 2, 3}).Control(0, 5).Row(0, {5, 4, 5})), "123 143"},
        {"a transparent index beyond the palette", RowsOf(RowDocument(2).Control(0, 200).Row(0, {1, 2})), "12"},
        {"a control counts for one image",
         RowsOf(RowDocument(2).Control(2, 1).Row(0, {1, 2}).Row(0, {1, 1}).Row(0, {3})), ".2 11 31"},
        {"of two controls the later", RowsOf(RowDocument(2).Control(0, 1).Control(0, 2).Row(0, {1, 2})), "1."},
        {"beyond the right edge", RowsOf(RowDocument(3).Row(2, {1, 2, 3})), "..1"},
        {"wholly outside, and cleared there", RowsOf(RowDocument(2).Row(0, {1, 2}).Control(2).Row(7, {3}).Row(0, {4})),
         "12 12 42"},
        {"below the screen", RowsOf(RowDocument(2).Row(0, {1}, 1)), ".."},
        {"an index beyond the palette is black", RowsOf(RowDocument(2).Row(0, {9, 1})), "01"},
        {"a screen without width takes the first image's edge",
         RowsOf(RowDocument(0).Row(1, {1, 2}).Row(0, {3, 3, 3, 3})), ".12 333"},
        {"a screen without height", RowsOf(RowDocument(2, 0).Row(0, {1, 2})), "12"},
    };
    for (const auto& [what, rows, expected] : cases) EXPECT_EQ(rows, expected) << what;
}

TEST(Stage, ImagesWithoutPixelsKeepTheirPlaceInTime) {
    RowDocument document(3);
    document.Row(0, {1, 2, 3}).Control(2).Row(1, {}).Control(2).Row(0, {4, 4}).Row(2, {5});
    document.blocks[5].data = nullptr;  // could not be decoded
    EXPECT_EQ(RowsOf(document), "123 123 123 ..5");
}

// All of the canvas, and some rows of it.
TEST(Stage, EqualsTheLiteralFormOnRandomAnimations) {
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        BlockList list = RandomAnimation(random, 2 + round % 12);
        Animation animation;
        Stage stage;
        ASSERT_TRUE(animation.Open(list, Texts::kLeftOut));
        const bool isWhole = round % 3 > 0;
        const int width = animation.Width(), height = animation.Height();
        const int top = isWhole ? 0 : static_cast<int>(random() % static_cast<unsigned>(height));
        const int bottom =
            isWhole ? height : top + 1 + static_cast<int>(random() % static_cast<unsigned>(height - top));
        ASSERT_TRUE(isWhole ? stage.Open(animation, 0) : stage.OpenRows(animation, top, bottom));
        const std::vector<Pixels> literal = ComposeLiterally(animation);
        ASSERT_EQ(animation.Frames().size(), literal.size());
        Pixels before(static_cast<size_t>(width * (bottom - top)), 0);
        for (uint32_t frame = 0; frame < literal.size(); ++frame) {
            ASSERT_TRUE(stage.Show(frame));
            const uint32_t* row = &literal[frame][static_cast<size_t>(top * width)];
            const Pixels rows(row, row + before.size());
            const Rectangle changed = stage.Changed();
            ASSERT_EQ(PixelsOf(stage), rows) << "round " << round << ", frame " << frame;
            ASSERT_EQ(Common(changed, {0, top, width, bottom}), changed) << round << " " << frame;
            ASSERT_TRUE(DiffersWithin(rows, before, width,
                                      {changed.left, changed.top - top, changed.right, changed.bottom - top}))
                << round << " " << frame;
            before = rows;
        }
    }
}

TEST(Stage, GoesToAnyFrameInAnyOrderWhateverIsKept) {
    std::mt19937 random(8);
    for (int round = 0; round < 60; ++round) {
        BlockList list = RandomAnimation(random, 25);
        Animation animation;
        Stage stage;
        ASSERT_TRUE(animation.Open(list, Texts::kDrawn));
        const uint64_t canvasBytes = animation.Screen().Pixels() * 4;
        ASSERT_TRUE(stage.Open(animation, canvasBytes * static_cast<uint64_t>(round % 7)));
        const std::vector<Pixels> literal = ComposeLiterally(animation);
        Pixels before(literal[0].size(), 0);
        for (int step = 0; step < 60; ++step) {
            const auto frame = static_cast<uint32_t>(random() % literal.size());
            ASSERT_TRUE(stage.Show(frame));
            ASSERT_EQ(PixelsOf(stage), literal[frame]) << "round " << round << ", frame " << frame;
            ASSERT_TRUE(DiffersWithin(literal[frame], before, animation.Width(), stage.Changed()))
                << round << " " << step;
            before = literal[frame];
        }
    }
}

TEST(Stage, GoesBackFromTheNearestCanvas) {
    RowDocument document(8);
    for (int i = 0; i < 100; ++i) document.Row(i % 8, {static_cast<uint32_t>(i % 8)});
    document.Row(0, {1, 1, 1, 1, 1, 1, 1, 1});  // frame 100 stands alone
    for (int i = 0; i < 99; ++i) document.Row(i % 8, {2});
    Animation animation;
    ASSERT_TRUE(animation.Open(document, Texts::kDrawn));
    struct {
        uint64_t kept;      // canvases
        uint32_t from, to;  // frames
        uint64_t drawn;     // on the way
    } const cases[] = {
        {0, 199, 99, 100},                                      // from the first
        {0, 199, 101, 2},                                       // from the one that stands alone
        {0, 5, 101, 2},     {0, 98, 99, 1},  {9, 199, 99, 20},  // every 20th is kept: the one before frame 80
        {9, 199, 80, 1},    {9, 30, 90, 60},                    // those ahead are not there yet
        {1000, 199, 99, 1},
    };
    for (const auto& [kept, from, to, drawn] : cases) {
        Stage stage;
        ASSERT_TRUE(stage.Open(animation, kept * 8 * 4));
        for (uint32_t frame = 0; frame <= from; ++frame) ASSERT_TRUE(stage.Show(frame));
        const uint64_t before = stage.FramesDrawn();
        EXPECT_EQ(stage.FramesToDraw(to), drawn) << kept << " kept, " << from << " to " << to;
        ASSERT_TRUE(stage.Show(to));
        EXPECT_EQ(stage.FramesToDraw(to), 0u);
        EXPECT_EQ(stage.FramesDrawn() - before, drawn) << kept << " kept, " << from << " to " << to;
    }
}

TEST(Stage, TouchesOnlyWhatChanges) {
    RowDocument document(10);
    document.Row(0, std::vector<uint32_t>(10, 1)).Control(2).Row(1, {2, 2}).Row(4, {3}).Row(20, {3});
    Animation animation;
    Stage stage;
    ASSERT_TRUE(animation.Open(document, Texts::kDrawn));
    ASSERT_TRUE(stage.Open(animation, 0));
    const Rectangle expected[] = {{0, 0, 10, 1}, {1, 0, 3, 1}, {1, 0, 5, 1}, {}};
    for (uint32_t frame = 0; frame < 4; ++frame) {
        ASSERT_TRUE(stage.Show(frame));
        EXPECT_EQ(stage.Changed(), expected[frame]) << frame;
    }
    ASSERT_TRUE(stage.Show(3));
    EXPECT_TRUE(stage.Changed().IsEmpty()) << "shown already";
}

TEST(Stage, TellsWhenMemoryIsShort) {
    RowDocument document(4);
    document.Row(0, {1, 2, 3, 4}).Control(3).Row(0, {2}).Control(3).Row(1, {2, 3}).Row(0, {5});
    long n = 0;
    for (bool failed = true; failed; ++n) {
        faults.onlyOne = true;
        faults.allocationsUntilFailure = n;
        Animation animation;
        Stage stage;
        bool done = animation.Open(document, Texts::kDrawn) && stage.Open(animation, 1000);
        for (uint32_t frame = 0; done && frame < 4; ++frame) done = stage.Show(frame);
        failed = faults.allocationsUntilFailure == Faults::kPast;
        faults = {};
        if (done) {
            EXPECT_EQ(RowOf(stage.Canvas()), "5234") << n << ": a kept canvas may be missing, a wrong one may not";
        }
    }
    EXPECT_GT(n, 5) << "too few allocations to tell anything";
}

TEST(Stage, RefusesWhatNoCanvasHolds) {
    const std::tuple<int, int, bool> cases[] = {
        {16384, 16384, true}, {16385, 16384, false}, {65535, 65535, false}, {65535, 1, true}};
    for (const auto& [width, height, fits] : cases) {
        RowDocument document(width, height);
        Animation animation;
        ASSERT_TRUE(animation.Open(document, Texts::kDrawn));
        EXPECT_EQ(FitsCanvas(animation), fits) << width << " x " << height;
    }
}

TEST(Stage, DrawsTextsIntoTheFrameOfTheNextImage) {
    RowDocument document(40, 30);
    document.Control(2, 2).Text(1, 1, "I").Row(0, {5}).Control(0, 7, 30).Text(20, 15, "-\r-", 80, 2);
    Animation animation;
    ASSERT_TRUE(animation.Open(document, Texts::kDrawn));
    ASSERT_EQ(animation.Frames().size(), 2u) << "the text at the end is a frame";
    EXPECT_EQ(animation.Frames()[1].length, 30u);
    Stage stage;
    ASSERT_TRUE(stage.Open(animation, 0));
    ASSERT_TRUE(stage.Show(0));
    EXPECT_EQ(RowOf(stage.Canvas()).substr(0, 10), "5.........");
    EXPECT_EQ(RowOf(stage.Canvas(), 3).substr(0, 10), "...111....") << "no background: its index is transparent";
    ASSERT_TRUE(stage.Show(1));
    EXPECT_EQ(stage.Changed(), Rectangle({0, 0, 28, 30})) << "the cleared image, and two lines cut off at the edge";
    EXPECT_EQ(RowOf(stage.Canvas(), 20).substr(18, 12), "..21111122..");
    EXPECT_EQ(RowOf(stage.Canvas(), 3).substr(0, 10), "...111....") << "a text is not disposed of";

    ASSERT_TRUE(animation.Open(document, Texts::kLeftOut));
    EXPECT_EQ(animation.Frames().size(), 1u);
}

TEST(Animation, TellsWhenEachFrameIsPlayed) {
    RowDocument document(1);
    document.Control(0, kNoTransparency, 0).Row(0, {1}).Control(0, kNoTransparency, 1).Row(0, {1});
    document.Control(0, kNoTransparency, 2).Row(0, {1}).Row(0, {1}).Control(0, kNoTransparency, 65535).Row(0, {1});
    Animation animation;
    ASSERT_TRUE(animation.Open(document, Texts::kDrawn));
    const std::tuple<uint64_t, uint32_t, uint16_t> expected[] = {
        {0, 10, 0}, {10, 10, 1}, {20, 2, 2}, {22, 10, 0}, {32, 65535, 65535}};
    ASSERT_EQ(animation.Frames().size(), 5u);
    for (size_t i = 0; i < 5; ++i) {
        const auto& [start, length, delay] = expected[i];
        EXPECT_EQ(animation.Frames()[i].start, start) << i;
        EXPECT_EQ(animation.Frames()[i].length, length) << i;
        EXPECT_EQ(animation.Frames()[i].delay, delay) << i;
    }
    EXPECT_EQ(animation.Length(), 65567u);
}

TEST(Animation, CountsHowOftenItIsPlayed) {
    auto loop = [](int iterations) {
        Block block = OfKind(kLoopBlock);
        PutLoopIterations(&block, static_cast<uint16_t>(iterations));
        return block;
    };
    auto application = [](std::string_view name, std::string_view data) {
        Block block = MakeText(kApplicationBlock, data);
        std::copy(name.begin(), name.end(), block.descriptor + kIdentifierOffset);
        return block;
    };
    using namespace std::string_view_literals;
    const std::tuple<const char*, std::vector<Block>, uint32_t> cases[] = {
        {"no loop block", {}, 1},
        {"for ever", {loop(0)}, 0},
        {"repeats", {loop(1)}, 2},
        {"most", {loop(65535)}, 65536},
        {"the last counts", {loop(0), loop(4)}, 5},
        {"the other name", {application("ANIMEXTS1.0", "\1\3\0"sv)}, 4},
        {"the other name cut short", {application("ANIMEXTS1.0", "\1\3"sv)}, 1},
        {"other bits in its kind", {application("NETSCAPE2.0", "\x41\3\0"sv)}, 4},
        {"longer than it needs to be", {application("NETSCAPE2.0", "\1\3\0\0"sv)}, 4},
        {"behind the size of a buffer", {application("NETSCAPE2.0", "\2\0\0\1\0\1\3\0"sv)}, 4},
        {"behind it, cut short", {application("NETSCAPE2.0", "\2\0\0\1\0\1\3"sv)}, 1},
        {"another sub-block of it", {application("ANIMEXTS1.0", "\2\3\0\0\0"sv)}, 1},
        {"a foreign block", {application("ANIMEXTS2.0", "\1\3\0"sv)}, 1},
    };
    for (const auto& [what, blocks, plays] : cases) {
        RowDocument document(1);
        for (const Block& block : blocks) Append(&document, block);
        Animation animation;
        ASSERT_TRUE(animation.Open(document, Texts::kDrawn));
        EXPECT_EQ(animation.Plays(), plays) << what;
    }
}
