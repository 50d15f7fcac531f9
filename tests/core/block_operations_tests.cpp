// Blocks moved, doubled, taken out, and brought from another document.
#include "editing/block_operations.h"

#include <cstring>

#include "editing/block_copy.h"
#include "platform/faults.h"
#include "tests/support/operations.h"
#include "tests/support/row_document.h"

namespace {

using Numbers = std::vector<uint32_t>;

// 0 HEADER, 1 COMMENT "a", 2 COMMENT "b", 3 LOOP, 4 COMMENT "c", 5 IMAGE, with an odd byte before "b".
LoadedGif Letters() {
    GifBytes bytes = GifBytes().Header("GIF89a", 5, 4, 0x81).Comment("a").Add({9}).Comment("b");
    bytes.Loop(0).Comment("c").SmallImage();
    return LoadedGif(bytes.Add({0x3B}), Manner::kWhole);
}

// The comments' letters and the other kinds' digits.
std::string LettersAndKinds(const BlockList& list) {
    std::string letters;
    for (const Block& block : list.All())
        letters += block.kind == kCommentBlock ? TextOf(block) : std::to_string(block.kind);
    return letters;
}

// Colour i is (shift + i, 0, 0).
Block HeaderOf(int depth, int shift) {
    RowDocument list(9);
    Block header = list.blocks[0];
    std::vector<RgbTriple> colours;
    for (int i = 0; i < 1 << depth; ++i) colours.push_back({static_cast<uint8_t>(shift + i), 0, 0});
    (void)header.palette.Set(colours);
    PutHeaderFields(&header, {9, 1, static_cast<uint8_t>(0x80 | (depth - 1)), 0, 0});
    return header;
}

// A document of such colours, saved and read again, so that its blocks have bytes.
LoadedGif Saved(const RowDocument& made, const Block& header) {
    BlockList list = CopyOf(made);
    list.blocks[0] = header;
    return LoadedGif(SavedBytes(list), Manner::kWhole);
}

}  // namespace

TEST(BlockOperations, MoveAndDuplicateAndDelete) {
    enum Operation { kMove, kDuplicate, kDelete };
    const char kFixed[] = "The header block can't be copied or deleted.";
    const struct {
        Operation operation;
        Numbers blocks;
        uint32_t at;
        const char *letters, *refusal = "";
    } cases[] = {
        {kMove, {4}, 0, "1cab72"},
        {kMove, {1}, 5, "1b7c2a"},
        {kMove, {4, 1}, 2, "1bca72"},
        {kMove, {2}, 2, "1ab7c2"},
        {kMove, {1, 2}, 2, "1ab7c2"},
        {kMove, {1, 2, 3, 4, 5}, 3, "1ab7c2"},
        {kMove, {0}, 3, "1ab7c2", "the header can't be moved"},
        {kMove, {1}, 6, "1ab7c2", "there is no block 6"},
        {kDuplicate, {1, 5}, 0, "1a2ab7c2"},
        {kDuplicate, {2}, 2, "1abb7c2"},
        {kDuplicate, {2, 0}, 2, "1ab7c2", kFixed},
        {kDuplicate,
         {3},
         2,
         "1ab7c2",
         "A LOOP block already exists in this image. Delete it before inserting a new one."},
        {kDelete, {5, 1}, 0, "1b7c"},
        {kDelete, {1, 2, 3, 4, 5}, 0, "1"},
        {kDelete, {1, 0}, 0, "1ab7c2", kFixed},
    };
    const Bytes original = SavedBytes(Letters());
    for (const auto& [operation, blocks, at, letters, refusal] : cases) {
        LoadedGif list = Letters();
        const EditOutcome outcome = operation == kMove        ? MoveBlocks(blocks, at, Looks::kLeft, &list)
                                    : operation == kDuplicate ? DuplicateBlocks(blocks, at, Looks::kLeft, &list)
                                                              : DeleteBlocks(blocks, Looks::kLeft, &list);
        EXPECT_EQ(outcome.refusal, refusal) << letters;
        EXPECT_EQ(LettersAndKinds(list), letters) << at;
        if (!outcome) {
            EXPECT_EQ(SavedBytes(list), original) << letters;
        }
        for (uint32_t i = 0; i < list.count; ++i) {
            EXPECT_EQ(list.blocks[i].position, i);
            EXPECT_EQ(list.blocks[i].owner, &list);
        }
    }
}

TEST(BlockOperations, StrayBytesGoWithTheirBlockAndNotWithItsCopy) {
    LoadedGif list = Letters();
    ASSERT_TRUE(DuplicateBlocks(Numbers{2}, 5, Looks::kLeft, &list));
    ASSERT_TRUE(MoveBlocks(Numbers{2}, 0, Looks::kLeft, &list));
    GifBytes expected = GifBytes().Header("GIF89a", 5, 4, 0x81).Add({9}).Comment("b").Comment("a");
    expected.Loop(0).Comment("c").SmallImage().Comment("b");
    EXPECT_EQ(SavedBytes(list), expected.Add({0x3B}));
}

TEST(BlockCopy, ColoursAreReconciled) {
    using enum ForeignColours;
    const char kColours[] = "block 2: its colours are not the document's";
    const struct {
        const char* what;
        int depth, shift;  // of the other document's palette; the document has the reds 0 to 7
        int transparent;
        ForeignColours colours;
        std::vector<uint32_t> pixels;
        const char *refusal, *rows;  // of the copy alone on an empty canvas
        bool isAsItWas;
    } cases[] = {
        {"the same palette", 3, 0, kNoTransparency, kRefuse, {1, 7}, "", "17", true},
        {"a smaller one", 1, 0, kNoTransparency, kRefuse, {1, 0}, "", "10", true},
        {"a larger one whose other colours are not used", 5, 0, kNoTransparency, kRefuse, {1, 7}, "", "17", true},
        {"what is transparent shows nothing", 3, 1, 2, kRefuse, {2}, "", ".", true},
        {"but needs its index", 5, 0, 30, kRefuse, {1, 30}, kColours, "", false},
        {"and gets another one", 5, 0, 30, kRemap, {1, 30}, "", "1.", false},
        {"a larger one", 5, 0, kNoTransparency, kRefuse, {1, 9}, kColours, "", false},
        {"other colours", 3, 1, kNoTransparency, kRefuse, {1, 2}, kColours, "", false},
        {"other colours mapped", 3, 1, kNoTransparency, kRemap, {1, 2}, "", "23", false},
        {"with what is transparent", 3, 1, 2, kRemap, {1, 2, 4}, "", "2.5", false},
        {"without anything of that", 3, 1, 2, kRemap, {1, 3, 4}, "", "245", false},
        {"dithered", 3, 1, 0, kDither, {1, 2, 0}, "", "00.", false},
        {"kept", 3, 1, 2, kKeep, {1, 2, 3}, "", "2.4", false},
        {"all indices are taken",
         4,
         0,
         15,
         kRemap,
         {0, 1, 2, 3, 4, 5, 6, 7, 15},
         "block 2: the document's palette leaves no colour for what is transparent in it",
         "",
         false},
    };
    for (const auto& [what, depth, shift, transparent, colours, pixels, refusal, rows, isAsItWas] : cases) {
        RowDocument made(9);
        made.Control(0, transparent, 8).Row(0, pixels);
        made.blocks[1].descriptor[0] = kControlDescriptorBytes - 2;
        made.blocks[2].data = MakeRow(BitCountForDepth(depth), pixels);
        ImageFields fields = GetImageFields(made.blocks[2]);
        fields.packed = WithDepth(0, depth);
        PutImageFields(&made.blocks[2], fields);
        LoadedGif other = Saved(made, HeaderOf(depth, shift));
        LoadedGif list = Saved(RowDocument(9), HeaderOf(3, 0));
        const Bytes before = SavedBytes(list);
        const CopyOutcome outcome = CopyBlocks(other, Numbers{1, 2}, 0, colours, Looks::kLeft, &list);
        EXPECT_EQ(outcome.refusal, refusal) << what;
        EXPECT_EQ(outcome.wantsChoice, outcome.refusal == kColours) << what;
        if (!outcome) {
            EXPECT_EQ(SavedBytes(list), before) << what;
            continue;
        }
        EXPECT_EQ(RowsOf(list).substr(0, pixels.size()), rows) << what;
        LoadedGif again(SavedBytes(list), Manner::kWhole);
        EXPECT_EQ(RowsOf(again).substr(0, pixels.size()), rows) << what << ", read again";
        EXPECT_EQ(HasSource(list.blocks[2]), isAsItWas) << what;
        if (isAsItWas) {
            EXPECT_LE(MemorySize(list.blocks[2].aux), list.blocks[2].source.bytes + 16u) << "not the whole other file";
        }
    }
}

TEST(BlockCopy, LocalPalettesAndDocumentsWithoutAGlobalOne) {
    LoadedGif other(GifBytes().Header("GIF89a", 5, 4, 0x81).SmallImage(0x82).SmallImage().Add({0x3B}), Manner::kWhole);
    const GifBytes bare = GifBytes().Header("GIF87a", 5, 4, 0);
    LoadedGif list(GifBytes(bare).Add({0x3B}), Manner::kWhole);
    ASSERT_TRUE(CopyBlocks(other, Numbers{2, 1}, 0, ForeignColours::kRefuse, Looks::kLeft, &list));
    // The one had the global palette and gets it as its own, encoded anew; the other keeps its bytes.
    EXPECT_EQ(RowsOf(list), RowsOf(LoadedGif(SavedBytes(list), Manner::kWhole)));
    EXPECT_FALSE(HasSource(list.blocks[1]));
    EXPECT_TRUE(HasSource(list.blocks[2]));
    EXPECT_EQ(GetImageFields(list.blocks[1]).packed, 0x81);
    EXPECT_EQ(GetImageFields(list.blocks[2]).packed, 0x82);

    Block text = MakeText(kPlainTextBlock, "t");
    text.descriptor[0] = kPlainTextDescriptorBytes - 1;
    Append(&other, text);
    EXPECT_EQ(CopyBlocks(other, Numbers{3}, 0, ForeignColours::kKeep, Looks::kLeft, &list).refusal,
              "block 3: there is no global palette, whose colours a plain text block needs");
    EXPECT_EQ(list.count, 3u);
}

TEST(BlockCopy, TextsAndTheirControls) {
    RowDocument made(9);
    made.Control(0, 2, 8).Text(0, 0, "t").Row(0, {1, 2, 4});  // index 2 is transparent for both
    PlainTextFields fields = GetPlainTextFields(made.blocks[2]);
    fields.foregroundIndex = 3;
    fields.backgroundIndex = 2;
    PutPlainTextFields(&made.blocks[2], fields);
    made.blocks[2].descriptor[0] = kPlainTextDescriptorBytes - 1;
    made.blocks[1].descriptor[0] = kControlDescriptorBytes - 2;
    LoadedGif other = Saved(made, HeaderOf(3, 1));
    LoadedGif list = Saved(RowDocument(9), HeaderOf(3, 0));
    EXPECT_EQ(CopyBlocks(other, Numbers{1, 2}, 0, ForeignColours::kRefuse, Looks::kLeft, &list).refusal,
              "block 2: its colours are not the document's");
    EXPECT_EQ(CopyBlocks(other, Numbers{1, 2}, 0, ForeignColours::kKeep, Looks::kLeft, &list).refusal,
              "block 2: a plain text has no palette to keep its colours in");
    ASSERT_TRUE(CopyBlocks(other, Numbers{1, 2, 3}, 0, ForeignColours::kRemap, Looks::kLeft, &list));
    EXPECT_EQ(KindsOf(list), "13432") << "the image needs another transparent index, in a control of its own";
    EXPECT_EQ(GetControlFields(list.blocks[1]).transparentIndex, 3);
    EXPECT_EQ(GetPlainTextFields(list.blocks[2]).foregroundIndex, 4);
    EXPECT_EQ(GetPlainTextFields(list.blocks[2]).backgroundIndex, 3);
    EXPECT_EQ(GetControlFields(list.blocks[3]).delay, 8);
    LoadedGif saved(SavedBytes(list), Manner::kWhole);
    Animation animation;
    Stage stage;
    ASSERT_TRUE(animation.Open(saved, Texts::kLeftOut));
    ASSERT_TRUE(stage.Open(animation, 0));
    ASSERT_TRUE(stage.Show(0));
    EXPECT_EQ(RowOf(stage.Canvas()).substr(0, 3), "2.5");
}

TEST(BlockCopy, WhatIsRefused) {
    LoadedGif other = Letters();
    LoadedGif list = Letters();
    const Bytes before = SavedBytes(list);
    const std::pair<Numbers, const char*> cases[] = {
        {{1, 0}, "block 0: The header block can't be copied or deleted."},
        {{3}, "block 3: A LOOP block already exists in this image. Delete it before inserting a new one."},
    };
    for (const auto& [blocks, refusal] : cases)
        EXPECT_EQ(CopyBlocks(other, blocks, 0, ForeignColours::kKeep, Looks::kLeft, &list).refusal, refusal);
    EXPECT_EQ(CopyBlocks(other, Numbers{1}, 9, ForeignColours::kKeep, Looks::kLeft, &list).refusal,
              "there is no block 9");
    EXPECT_EQ(SavedBytes(list), before);
    long n = 0;
    for (bool failed = true; failed; ++n) {
        faults.onlyOne = true;
        faults.allocationsUntilFailure = n;
        const CopyOutcome outcome = CopyBlocks(other, Numbers{1, 5}, 2, ForeignColours::kKeep, Looks::kKept, &list);
        failed = faults.allocationsUntilFailure == Faults::kPast;
        faults = {};
        if (outcome) break;
        EXPECT_EQ(SavedBytes(list), before) << n;
    }
    EXPECT_GT(n, 10) << "too few allocations to tell anything";
}

TEST(BlockCopy, FramesKeepTheLooksTheyHadInTheirDocuments) {
    RowDocument other(3), list(2);
    other.Row(0, {7, 7, 7}).Control(0).Row(1, {6});  // looks as 767
    list.Row(0, {1, 1}).Control(0, 5).Row(1, {2});
    ASSERT_TRUE(CopyBlocks(other, Numbers{2, 3}, 1, ForeignColours::kKeep, Looks::kKept, &list));
    EXPECT_EQ(RowsOf(list), "11 76 12") << "the right edge is cut off";
}
