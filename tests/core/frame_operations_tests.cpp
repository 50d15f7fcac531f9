// Operations on frames: what the document looks like afterwards, and what keeps its bytes.
#include "editing/frame_operations.h"

#include <algorithm>
#include <numeric>

#include "editing/block_operations.h"
#include "editing/history.h"
#include "editing/keep_looks.h"
#include "editing/selection.h"
#include "editing/timing.h"
#include "platform/faults.h"
#include "tests/support/literal_stage.h"
#include "tests/support/operations.h"

namespace {

using Numbers = std::vector<uint32_t>;

std::vector<Pixels> LooksOf(const BlockList& list) {
    Animation animation;
    EXPECT_TRUE(animation.Open(list, Texts::kLeftOut));
    return ComposeLiterally(animation);
}

std::vector<Pixels> Chosen(const std::vector<Pixels>& looks, const Numbers& frames) {
    std::vector<Pixels> chosen;
    for (uint32_t frame : frames) chosen.push_back(looks[frame]);
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

// A random operation: does it and tells which of the old frames the new ones are.
EditOutcome DoSomething(BlockList* list, std::mt19937& random, Numbers* order) {
    const Numbers all = AllFrames(*list);
    Numbers some = SomeFrames(*list, random), sorted = some;
    std::ranges::sort(sorted);
    *order = all;
    const auto at = static_cast<uint32_t>(random() % list->count);
    const auto before = static_cast<size_t>(std::count_if(list->blocks.get(), list->blocks.get() + at + 1,
                                                          [](const Block& b) { return b.kind == kImageBlock; }));
    switch (random() % 6) {
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
        const BlockList old = CopyOf(list);
        const std::vector<Pixels> looks = LooksOf(list);
        Numbers order;
        const EditOutcome outcome = DoSomething(&list, random, &order);
        ASSERT_EQ(outcome.refusal, "") << round;
        ASSERT_TRUE(outcome.notes.empty()) << round;
        ASSERT_EQ(LooksOf(list), Chosen(looks, order)) << "round " << round;
        size_t at = 0;
        for (const Block& block : list.All()) {
            if (block.kind != kImageBlock) continue;
            const bool isOld = SameContent(block, old.blocks[FindFrames(old)[order[at++]].blocks.back()]);
            ++(isOld ? kept : anew);
        }
    }
    EXPECT_GT(kept, 1000u);
    EXPECT_GT(anew, 1000u) << "too little to tell anything";
}
