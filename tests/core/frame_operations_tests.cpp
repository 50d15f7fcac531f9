// Operations on frames: what the document looks like afterwards, and what keeps its bytes.
#include "editing/frame_operations.h"

#include <algorithm>
#include <functional>
#include <numeric>

#include "editing/block_operations.h"
#include "editing/history.h"
#include "editing/keep_looks.h"
#include "editing/selection.h"
#include "editing/timing.h"
#include "platform/faults.h"
#include "tests/support/literal_stage.h"
#include "tests/support/operations.h"
#include "tests/support/row_document.h"

namespace {

using Numbers = std::vector<uint32_t>;

std::vector<Pixels> LooksOf(const BlockList& list) {
    Animation animation;
    EXPECT_TRUE(animation.Open(list, Texts::kLeftOut));
    return ComposeLiterally(animation);
}

template <typename T>
std::vector<T> Chosen(const std::vector<T>& all, const Numbers& frames) {
    std::vector<T> chosen;
    for (uint32_t frame : frames) chosen.push_back(all[frame]);
    return chosen;
}

Numbers AllFrames(const BlockList& list) {
    Numbers frames(FindFrames(list).size());
    std::iota(frames.begin(), frames.end(), 0u);
    return frames;
}

// Some of the frames, at least one, in any order.
Numbers SomeFrames(const BlockList& list, std::mt19937& random) {
    Numbers frames = AllFrames(list);
    std::shuffle(frames.begin(), frames.end(), random);
    frames.resize(1 + random() % frames.size());
    return frames;
}

Numbers BlocksOf(const BlockList& list, const Numbers& frames) {
    const std::vector<FrameBlocks> all = FindFrames(list);
    Numbers blocks;
    for (uint32_t frame : frames) blocks.insert(blocks.end(), all[frame].blocks.begin(), all[frame].blocks.end());
    return blocks;
}

// Puts comments, and texts with their controls, between the other blocks.
void Sprinkle(BlockList* list, std::mt19937& random) {
    for (int i = 0; i < 4; ++i) {
        int at = static_cast<int>(random() % list->count);
        std::vector<Block> blocks = {MakeText(random() % 2 ? kCommentBlock : kPlainTextBlock, "words")};
        Block control = OfKind(kControlBlock);
        PutControlFields(&control, {static_cast<uint8_t>(random() % 32), 7, 1});
        if (blocks[0].kind == kPlainTextBlock && random() % 2) blocks.insert(blocks.begin(), control);
        ASSERT_TRUE(InsertBlocks(list, &at, blocks));
    }
}

// A random operation: does it and tells which of the old frames the new ones are.
EditOutcome DoSomething(unsigned what, BlockList* list, std::mt19937& random, Numbers* order) {
    const Numbers all = AllFrames(*list);
    Numbers some = SomeFrames(*list, random), sorted = some;
    std::ranges::sort(sorted);
    *order = all;
    const auto at = static_cast<uint32_t>(random() % list->count);
    const auto before = static_cast<size_t>(std::count_if(list->blocks.get(), list->blocks.get() + at + 1,
                                                          [](const Block& b) { return b.kind == kImageBlock; }));
    switch (what) {
        case 0:
            for (size_t i = 0; i < sorted.size(); ++i) (*order)[sorted[i]] = sorted[sorted.size() - 1 - i];
            return ReverseFrames(some, list);
        case 1: *order = sorted; return CutFrames(some, list);
        case 2: {
            const auto every = static_cast<uint32_t>(1 + random() % 4);
            std::erase_if(*order, [&](uint32_t frame) { return frame % every != 0; });
            return ThinFrames(every, list);
        }
        case 3: {
            auto isChosen = [&](uint32_t frame) { return std::ranges::find(some, frame) != some.end(); };
            const auto place =
                std::count_if(all.begin(), all.begin() + static_cast<long>(before), std::not_fn(isChosen));
            std::erase_if(*order, isChosen);
            order->insert(order->begin() + place, some.begin(), some.end());
            return MoveBlocks(BlocksOf(*list, some), at, Looks::kKept, list);
        }
        case 4:
            std::erase_if(*order, [&](uint32_t frame) { return std::ranges::find(some, frame) != some.end(); });
            return DeleteBlocks(BlocksOf(*list, some), Looks::kKept, list);
        default:
            order->insert(order->begin() + static_cast<long>(before), some.begin(), some.end());
            return DuplicateBlocks(BlocksOf(*list, some), at, Looks::kKept, list);
    }
}

}  // namespace

TEST(FrameOperations, FramesLookAsTheyDidInTheNewOrder) {
    std::mt19937 random(18);
    size_t kept = 0, anew = 0;
    for (int round = 0; round < 1500; ++round) {
        BlockList list = RandomAnimation(random, 1 + round % 9);
        if (round % 3 == 0) Sprinkle(&list, random);
        const BlockList old = CopyOf(list);
        const std::vector<Pixels> looks = LooksOf(list);
        Numbers order;
        const auto op = static_cast<unsigned>(random() % 6);
        const EditOutcome outcome = DoSomething(op, &list, random, &order);
        ASSERT_EQ(outcome.refusal, "") << round;
        ASSERT_TRUE(outcome.notes.empty()) << round;
        if (op < 2) {
            ASSERT_EQ(DelaysOf(list), Chosen(DelaysOf(old), order)) << "round " << round;
        }
        ASSERT_EQ(LooksOf(list), Chosen(looks, order)) << "round " << round;
        size_t at = 0;
        for (const Block& block : list.All()) {
            if (block.kind != kImageBlock) continue;
            const bool isOld = SameContent(block, old.blocks[FindFrames(old)[order[at++]].blocks.back()]);
            ++(isOld ? kept : anew);
        }
    }
    EXPECT_GT(kept, 1000u);
    EXPECT_GT(anew, 700u) << "too little to tell anything";
}

TEST(FrameOperations, WhatKeepsItsBytesAndWhatIsComposedAnew) {
    const auto reverse = [](BlockList* list) { return ReverseFrames(AllFrames(*list), list); };
    const auto cut = [](Numbers frames) { return [frames](BlockList* list) { return CutFrames(frames, list); }; };
    const auto thin = [](uint32_t every) { return [every](BlockList* list) { return ThinFrames(every, list); }; };
    const struct {
        const char* what;
        BlockList list;
        std::function<EditOutcome(BlockList*)> operation;
        const char *rows, *kinds;
        size_t keptImages;
    } cases[] = {
        {"full frames", CopyOf(RowDocument(2).Row(0, {1, 1}).Row(0, {2, 2}).Row(0, {3, 3})), reverse, "33 22 11",
         "1222", 3},
        {"a single frame", CopyOf(RowDocument(2).Control(0).Row(0, {1})), reverse, "1.", "132", 1},
        {"frames that clear themselves", CopyOf(RowDocument(3).Control(2).Row(0, {1}).Control(2).Row(2, {2})), reverse,
         "..2 1..", "13232", 2},
        {"a part on a ground", CopyOf(RowDocument(3).Row(0, {1, 1, 1}).Row(1, {2})), reverse, "121 111", "122", 1},
        {"what must be cleared is disposed of by the control there is",
         CopyOf(RowDocument(3).Control(0).Row(0, {1, 1}).Row(2, {2})), reverse, "112 11.", "13232", 1},
        {"or by a new one", CopyOf(RowDocument(3).Row(0, {1, 1}).Row(2, {2})), reverse, "112 11.", "13232", 1},
        {"frames in front go", CopyOf(RowDocument(3).Row(0, {1, 1}).Row(2, {2}).Row(0, {3})), cut({1, 2}), "112 312",
         "122", 1},
        {"frames behind go", CopyOf(RowDocument(3).Row(0, {1, 1}).Row(2, {2}).Row(0, {3})), cut({1, 0}), "11. 112",
         "122", 2},
        {"comments stay", CopyOf(RowDocument(1).Row(0, {1}).Text(0, 0, "t").Row(0, {2})), cut({0}), "1", "124", 1},
        {"every other", CopyOf(RowDocument(3).Row(0, {1}).Row(1, {1}).Row(2, {1}).Row(0, {2})), thin(2), "1.. 111",
         "13232", 1},
        {"all of them", CopyOf(RowDocument(3).Row(0, {1}).Row(1, {1})), thin(1), "1.. 11.", "122", 2},
        {"none but the first", CopyOf(RowDocument(3).Row(0, {1}).Row(1, {1})), thin(9), "1..", "132", 1},
    };
    for (const auto& [what, made, operation, rows, kinds, keptImages] : cases) {
        BlockList list = CopyOf(made);
        EXPECT_EQ(operation(&list).refusal, "") << what;
        EXPECT_EQ(RowsOf(list).substr(0, std::string(rows).size()), rows) << what;
        EXPECT_EQ(KindsOf(list), kinds) << what;
        const auto images = [](const Block& block) { return block.kind == kImageBlock; };
        size_t kept = 0;
        for (const Block& image : list.All())
            kept += images(image) && std::ranges::any_of(made.All(), [&](const Block& old) {
                        return images(old) && old.data == image.data;
                    });
        EXPECT_EQ(kept, keptImages) << what;
    }
}

TEST(FrameOperations, TheControlOfATextCountsForNoOtherImage) {
    // The control of the text counts for the image behind it, too.
    RowDocument list(2);
    list.Row(0, {1, 1}).Control(2, 3, 40).Text(0, 9, "t").Row(0, {3, 2}).Row(0, {4});
    const std::vector<Pixels> looks = LooksOf(list);
    ASSERT_TRUE(ReverseFrames(AllFrames(list), &list));
    EXPECT_EQ(LooksOf(list), Chosen(looks, {2, 1, 0}));
    EXPECT_EQ(DelaysOf(list), Numbers({0, 40, 0}));
    ASSERT_TRUE(CutFrames(Numbers{0, 2}, &list));
    EXPECT_EQ(LooksOf(list), Chosen(looks, {2, 0}));
    EXPECT_EQ(DelaysOf(list), Numbers({0, 0}));
    ASSERT_GE(FindBlock(list, kPlainTextBlock), 0);
    const Block& control = list.blocks[static_cast<uint32_t>(FindBlock(list, kPlainTextBlock)) - 1];
    EXPECT_EQ(GetControlFields(control).delay, 40) << "the text has its own still";
}

TEST(FrameOperations, TheNewFirstFrameBringsNothingBack) {
    RowDocument list(2);
    list.Control(3).Row(0, {1}).Control(3).Row(1, {2});
    ASSERT_TRUE(ReverseFrames(AllFrames(list), &list));
    EXPECT_EQ(RowsOf(list), ".2 1.");
    EXPECT_EQ(GetControlFields(list.blocks[1]).packed, kDisposeBackground << kControlDisposalShift);
    EXPECT_EQ(GetControlFields(list.blocks[3]).packed, kDisposePrevious << kControlDisposalShift);
}

TEST(FrameOperations, ThinningAddsDelaysUp) {
    const struct {
        std::vector<int> delays;
        uint32_t every;
        Numbers expected;
        const char* refusal = "";
    } cases[] = {
        {{5, 6, 7, 8, 9}, 2, {11, 15, 9}},
        {{5, 6, 7}, 3, {18}},
        {{0, 1, 2, 1}, 3, {22, 1}},
        {{65535, 1}, 1, {65535, 1}},
        {{5, 65535}, 2, {5, 65535}, "frame 0 would have a delay of 65540 hundredths of a second; 65535 is the most"},
        {{}, 2, {}, "there is no frame"},
    };
    for (const auto& [delays, every, expected, refusal] : cases) {
        RowDocument list(1);
        for (int delay : delays) list.Control(0, kNoTransparency, delay).Row(0, {1});
        EXPECT_EQ(ThinFrames(every, &list).refusal, refusal);
        EXPECT_EQ(DelaysOf(list), expected);
    }
}

TEST(FrameOperations, AScreenThatFollowsTheFirstImageStays) {
    RowDocument list(0);
    list.Row(0, {1, 1, 1}).Row(0, {2}).Row(2, {3, 3, 3});
    const std::vector<Pixels> looks = LooksOf(list);
    ASSERT_TRUE(ReverseFrames(AllFrames(list), &list));
    EXPECT_EQ(LooksOf(list), Chosen(looks, {2, 1, 0}));
    EXPECT_EQ(GetHeaderFields(list.blocks[0]).screenWidth, 3);

    RowDocument large(65535, 65535);
    large.Row(0, {1}).Row(0, {2});
    EXPECT_EQ(ReverseFrames(Numbers{0, 1}, &large).refusal,
              "its screen of 65535 x 65535 pixels is too large to be composed");
}

TEST(FrameOperations, MoreColoursThanAnImageHasBecomeTheNearest) {
    RowDocument list(300, 2);
    for (int part = 0; part < 2; ++part) {
        Block image = MakeImage(150, 2, 8, kHasPalette);
        std::vector<RgbTriple> colours;
        for (int i = 0; i < 256; ++i) colours.push_back({static_cast<uint8_t>(i), static_cast<uint8_t>(part * 100), 9});
        ASSERT_TRUE(image.palette.Set(colours));
        for (uint32_t x = 0; x < 150; ++x)
            for (int y = 0; y < 2; ++y) SetImagePixel(ImageWriteLock(&image.data), static_cast<int>(x), y, x);
        ImageFields fields = GetImageFields(image);
        fields.left = static_cast<uint16_t>(150 * part);
        PutImageFields(&image, fields);
        Append(&list, image);
    }
    const Pixels wanted = LooksOf(list)[1];
    const EditOutcome outcome = CutFrames(Numbers{1}, &list);
    ASSERT_EQ(outcome.notes.size(), 1u);
    EXPECT_EQ(outcome.notes[0],
              "frame 0: it has more colours than one image can have now, and the nearest of them are taken");
    const Pixels shown = LooksOf(list)[0];
    for (size_t i = 0; i < shown.size(); ++i)
        for (int channel = 0; channel < 32; channel += 8)
            ASSERT_NEAR(static_cast<int>(shown[i] >> channel & 255), static_cast<int>(wanted[i] >> channel & 255), 8)
                << i;
}

TEST(FrameOperations, ShortMemoryChangesNothing) {
    std::mt19937 random(19);
    const BlockList old = RandomAnimation(random, 5);
    const std::vector<Pixels> looks = LooksOf(old);
    const Bytes bytes = SavedBytes(old);
    long n = 0;
    for (bool failed = true; failed; ++n) {
        BlockList list = CopyOf(old);
        faults.onlyOne = true;
        faults.allocationsUntilFailure = n;
        const EditOutcome outcome = ReverseFrames(Numbers{0, 1, 2, 3, 4}, &list);
        failed = faults.allocationsUntilFailure == Faults::kPast;
        faults = {};
        if (outcome)
            EXPECT_EQ(LooksOf(list), Chosen(looks, {4, 3, 2, 1, 0})) << n;
        else
            EXPECT_EQ(SavedBytes(list), bytes) << n;
    }
    EXPECT_GT(n, 15) << "too few allocations to tell anything";
}

TEST(FrameOperations, UndoBringsTheBytesBack) {
    std::mt19937 random(20);
    BlockList list = RandomAnimation(random, 8);
    History history(UINT64_MAX);
    std::vector<Bytes> states = {SavedBytes(list)};
    for (int i = 0; i < 40 && list.count < 100; ++i) {
        const BlockList before = CopyOf(list);
        const size_t steps = history.Steps();
        Numbers order;
        const unsigned operations[] = {0, 3, 5};  // those after which there is as much left
        ASSERT_TRUE(DoSomething(operations[random() % 3], &list, random, &order));
        history.Record("a step", before, list);
        if (history.Steps() > steps) states.push_back(SavedBytes(list));
    }
    ASSERT_GT(states.size(), 5u);
    for (size_t at = states.size() - 1; at > 0; --at) {
        ASSERT_TRUE(history.Undo(&list));
        EXPECT_EQ(SavedBytes(list), states[at - 1]) << at;
    }
    for (size_t at = 1; at < states.size(); ++at) {
        ASSERT_TRUE(history.Redo(&list));
        EXPECT_EQ(SavedBytes(list), states[at]) << at;
    }
}
