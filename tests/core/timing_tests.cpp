#include "editing/timing.h"

#include "tests/support/operations.h"
#include "tests/support/row_document.h"

namespace {

using Delays = std::vector<uint32_t>;

constexpr int kNoControl = -1;

RowDocument WithDelays(const std::vector<int>& delays) {
    RowDocument list(1);
    for (int delay : delays) {
        if (delay != kNoControl) list.Control(2, 3, delay);
        list.Row(0, {1});
    }
    return list;
}

}  // namespace

TEST(Timing, DelaysBeforeAndAfter) {
    const struct {
        const char* what;
        std::vector<int> old;
        Delays frames;
        Retiming how;
        Delays fresh;
        const char *refusal = "", *note = "";
    } cases[] = {
        {"the same for all", {5, kNoControl, 0}, {0, 1, 2}, {Retiming::kDelay, 7}, {7, 7, 7}},
        {"for one", {5, 6, 7}, {1}, {Retiming::kDelay, 65535}, {5, 65535, 7}},
        {"none",
         {5, kNoControl},
         {0, 1},
         {Retiming::kDelay, 0},
         {0, 0},
         "",
         "of 1 frame the delay is now below 2, for which players take 10"},
        {"half as long again", {5, 5, 5, 5}, {0, 1, 2, 3}, {Retiming::kScale, 15, 10}, {8, 7, 8, 7}},
        {"a third, of some", {9, 10, 10, 10}, {3, 2, 1}, {Retiming::kScale, 1, 3}, {9, 3, 4, 3}},
        {"delays of 0 stay", {0, 4, 0, 1}, {0, 1, 2, 3}, {Retiming::kScale, 2}, {0, 8, 0, 2}},
        {"too short to be played",
         {4, 4, 1},
         {0, 1, 2},
         {Retiming::kScale, 1, 4},
         {1, 1, 0},
         "",
         "of 2 frames the delay is now below 2, for which players take 10"},
        {"too long",
         {4, 40000},
         {0, 1},
         {Retiming::kScale, 2},
         {4, 40000},
         "frame 1 would have a delay of 80000 hundredths of a second; 65535 is the most"},
        {"far too long",
         {4, 65535},
         {0, 1},
         {Retiming::kScale, 999999999},
         {4, 65535},
         "frame 0 would have a delay of 3999999996 hundredths of a second; 65535 is the most"},
        {"a total", {1, 2, 3}, {0, 1, 2}, {Retiming::kTotal, 100}, {17, 33, 50}},
        {"a total of some", {10, 10, 10, 7}, {0, 1, 2}, {Retiming::kTotal, 100}, {33, 34, 33, 7}},
        {"shared evenly", {0, kNoControl, 0}, {0, 1, 2}, {Retiming::kTotal, 10}, {3, 4, 3}},
        {"a total of nothing",
         {3, 3},
         {0, 1},
         {Retiming::kTotal, 0},
         {0, 0},
         "",
         "of 2 frames the delay is now below 2, for which players take 10"},
        {"a total too long",
         {1, 1},
         {0, 1},
         {Retiming::kTotal, 4000000000},
         {1, 1},
         "frame 0 would have a delay of 2000000000 hundredths of a second; 65535 is the most"},
        {"at least", {0, kNoControl, 2, 3}, {0, 1, 2, 3}, {Retiming::kLeast, 2}, {2, 2, 2, 3}},
        {"of nothing", {}, {}, {Retiming::kDelay, 2}, {}, "there is no frame"},
    };
    for (const auto& [what, old, frames, how, fresh, refusal, note] : cases) {
        RowDocument list = WithDelays(old);
        const Bytes before = SavedBytes(list);
        const EditOutcome outcome = Retime(frames, how, &list);
        EXPECT_EQ(outcome.refusal, refusal) << what;
        EXPECT_EQ(outcome.notes.empty() ? "" : outcome.notes[0], note) << what;
        EXPECT_EQ(DelaysOf(list), fresh) << what;
        if (!outcome) {
            EXPECT_EQ(SavedBytes(list), before) << what;
        }
    }
}

TEST(Timing, ChangesNothingButDelays) {
    LoadedGif list(GifBytes().Header("GIF87a", 5, 4, 0x81).SmallImage().SmallImage().Add({0x3B, 1, 2}), Manner::kWhole);
    ASSERT_TRUE(Retime(Delays{1}, {Retiming::kDelay, 258}, &list));
    EXPECT_EQ(SavedBytes(list), GifBytes()
                                    .Header("GIF89a", 5, 4, 0x81)
                                    .SmallImage()
                                    .Add({0x21, 0xF9, 4, 0, 2, 1, 0, 0})
                                    .SmallImage()
                                    .Add({0x3B, 1, 2}))
        << "the first version has no controls";

    RowDocument controls(2);
    controls.Control(1, 1, 3).Control(2, 7, 4).Text(0, 0, "t").Row(0, {1, 2});
    ASSERT_TRUE(Retime(Delays{0}, {Retiming::kDelay, 9}, &controls));
    EXPECT_EQ(KindsOf(controls), "13342");
    EXPECT_EQ(GetControlFields(controls.blocks[1]).delay, 3) << "of two controls the later one counts";
    EXPECT_EQ(GetControlFields(controls.blocks[2]).delay, 9);
    EXPECT_EQ(GetControlFields(controls.blocks[2]).transparentIndex, 7);
}
