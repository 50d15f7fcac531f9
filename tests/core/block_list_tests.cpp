#include "gif/block_list.h"

#include <gtest/gtest.h>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"
#include "tests/support/fault_loop.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/test_blocks.h"

namespace {

std::string Message(unsigned id) {
    return LoadStr(id);
}

// A header and one comment for every letter.
class BlockListTest : public testing::Test {
protected:
    BlockListTest() { prompts = {}; }

    void Fill(const std::string& letters) {
        ASSERT_TRUE(NewDocument(&list_));
        for (char letter : letters) Append(&list_, MakeText(kCommentBlock, {&letter, 1}));
        RenumberBlocks(&list_);
    }

    // The comments' texts; checks positions and the owner on the way.
    std::string Letters() {
        std::string letters;
        ForEachBlock(list_, [&](const Block& block, uint32_t index) {
            EXPECT_EQ(block.position, index);
            EXPECT_EQ(block.owner, &list_);
            letters += block.kind == kHeaderBlock ? "." : TextOf(block);
            return true;
        });
        return letters;
    }

    OwnedList list_;
};

}  // namespace

TEST_F(BlockListTest, CapacityGrowsBySteps) {
    ASSERT_TRUE(CreateBlockList(&list_));
    EXPECT_EQ(list_.capacity, 64u);
    for (uint32_t count = 1; count <= 400; ++count) {
        Block block = MakeText(kCommentBlock, std::to_string(count));
        ASSERT_TRUE(AppendBlock(&list_, &block));
        EXPECT_EQ(list_.count, count);
        EXPECT_EQ(list_.capacity, (count / 64 + 1) * 64);
    }
    for (uint32_t i = 0; i < 400; ++i) EXPECT_EQ(TextOf(BlockAt(list_, i)), std::to_string(i + 1));
}

TEST_F(BlockListTest, RecordsOutsideTheList) {
    Fill("ab");
    Block block = {};
    EXPECT_TRUE(GetBlock(list_, &block, 2));
    for (uint32_t index : {3u, 63u, 64u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(GetBlock(list_, &block, index));
        EXPECT_FALSE(PutBlock(&list_, block, index));
    }
    EXPECT_FALSE(GetBlock(BlockList{}, &block, 0));
}

TEST_F(BlockListTest, WhereBlocksAreInserted) {
    struct Case {
        int selection;
        const char* letters;
        int selected;
    } const cases[] = {{-1, ".xab", 1}, {0, ".xab", 1}, {1, ".axb", 2}, {2, ".abx", 3}, {65535, ".abx", 3}};
    for (const Case& c : cases) {
        DestroyBlockList(&list_);
        Fill("ab");
        Block ready = MakeText(kCommentBlock, "x");
        int selection = c.selection;
        EXPECT_TRUE(InsertBlock(nullptr, &list_, &selection, kCommentBlock, &ready, nullptr));
        EXPECT_EQ(Letters(), c.letters) << c.selection;
        EXPECT_EQ(selection, c.selected);
    }
}

TEST_F(BlockListTest, InsertionsGrowTheList) {
    Fill("");
    int selection = 0;
    for (int i = 1; i <= 200; ++i) {
        ASSERT_TRUE(InsertBlock(nullptr, &list_, &selection, i % 2 ? kControlBlock : kLoopBlock, nullptr, nullptr));
        EXPECT_EQ(selection, i);
    }
    std::string kinds = KindsOf(list_);
    EXPECT_EQ(kinds.substr(0, 5), "13737");
    EXPECT_EQ(kinds.size(), 201u);
    selection = 3;
    for (uint16_t kind : {kEmptyBlock, kApplicationBlock, kBlockNamesBlock, kUnknownBlock})
        EXPECT_FALSE(InsertBlock(nullptr, &list_, &selection, kind, nullptr, nullptr));
    EXPECT_EQ(KindsOf(list_), kinds);
    EXPECT_EQ(selection, 3);
}

TEST_F(BlockListTest, Deletion) {
    Fill("abc");
    struct Case {
        int selection;
        bool deletes;
        const char* letters;
        int selected;
        unsigned message;
    } const cases[] = {
        {0, false, ".abc", 0, IDS_HEADER_FIXED},
        {-1, false, ".abc", -1, IDS_BLOCK_ACCESS},
        {4, false, ".abc", 4, IDS_BLOCK_ACCESS},
        {2, true, ".ac", 2, 0},
        {2, true, ".a", 1, 0},
        {1, true, ".", 0, 0},
        {0, false, ".", 0, IDS_HEADER_FIXED},
    };
    for (const Case& c : cases) {
        prompts = {};
        int selection = c.selection;
        EXPECT_EQ(DeleteBlock(nullptr, &list_, &selection), c.deletes);
        EXPECT_EQ(Letters(), c.letters);
        EXPECT_EQ(selection, c.selected);
        std::vector<std::string> said;
        if (c.message) said.push_back(Message(c.message));
        EXPECT_EQ(prompts.messages, said);
    }
}

TEST_F(BlockListTest, FailuresChangeNothing) {
    Fill("abc");
    auto insert = [&](FaultRound& round) {
        int selection = 2;
        bool inserted = InsertBlock(nullptr, &list_, &selection, kPlainTextBlock, nullptr, nullptr);
        round.End();
        EXPECT_EQ(inserted, round.IsUndisturbed());
        if (inserted) {
            EXPECT_EQ(selection, 3);
            EXPECT_TRUE(DeleteBlock(nullptr, &list_, &selection));
        }
        EXPECT_EQ(Letters(), ".abc");
    };
    EXPECT_EQ(ForEachFault(&Faults::allocationsUntilFailure, insert), 1);
    EXPECT_GE(ForEachFault(&Faults::locksUntilFailure, insert), 2);
    for (long lock : {0, 1}) {
        prompts = {};
        int selection = 1;
        faults.locksUntilFailure = lock;
        EXPECT_FALSE(DeleteBlock(nullptr, &list_, &selection));
        faults = {};
        EXPECT_EQ(Letters(), ".abc");
        EXPECT_EQ(prompts.messages, std::vector<std::string>{Message(IDS_BLOCK_ACCESS)});
    }
}

TEST_F(BlockListTest, GrowthThatFailsLeavesTheList) {
    Fill(std::string(62, 'a'));
    Block block = {};
    faults.allocationsUntilFailure = 0;
    EXPECT_FALSE(AppendBlock(&list_, &block));
    int selection = 1;
    EXPECT_FALSE(InsertBlock(nullptr, &list_, &selection, kControlBlock, nullptr, nullptr));
    BlockList other;
    EXPECT_FALSE(CreateBlockList(&other));
    faults = {};
    EXPECT_EQ(list_.count, 63u);
    EXPECT_EQ(list_.capacity, 64u);
    EXPECT_EQ(Letters(), "." + std::string(62, 'a'));
}

TEST_F(BlockListTest, Questions) {
    RgbTriples palette;
    EXPECT_EQ(FindHeader(list_), -1);
    EXPECT_EQ(FindGlobalPalette(list_, palette), 0);
    EXPECT_FALSE(HasLoopBlock(list_));
    Append(&list_, MakeText(kCommentBlock, "x"));
    Block bare = {}, coloured = {};
    bare.kind = coloured.kind = kHeaderBlock;
    PutHeaderFields(&bare, {1, 1, 6, 0, 0});
    PutHeaderFields(&coloured, {1, 1, kHasPalette | 4, 0, 0});
    coloured.palette[7] = {1, 2, 3};
    Append(&list_, bare);
    EXPECT_EQ(FindGlobalPalette(list_, palette), 0);
    Append(&list_, coloured);
    EXPECT_EQ(FindHeader(list_), 1);
    EXPECT_EQ(FindGlobalPalette(list_, nullptr), 5);
    EXPECT_EQ(FindGlobalPalette(list_, palette), 5);
    EXPECT_EQ(palette[7], (RgbTriple{1, 2, 3}));
    Block loop = {};
    loop.kind = kLoopBlock;
    Append(&list_, loop);
    EXPECT_TRUE(HasLoopBlock(list_));
}

TEST_F(BlockListTest, UnreadableListHasNoLoop) {
    Fill("a");
    faults.locksUntilFailure = 0;
    EXPECT_FALSE(HasLoopBlock(list_));
    EXPECT_EQ(FindHeader(list_), -1);
    EXPECT_FALSE(RenumberBlocks(&list_));
    faults = {};
}

TEST(BlockName, Lengths) {
    OwnedBlock block;
    char shown[kNameBytes] = "left";
    EXPECT_FALSE(GetBlockName(shown, block));
    EXPECT_STREQ(shown, "");
    for (size_t length : {0u, 1u, 259u, 260u, 261u, 5000u}) {
        std::string name(length, 'n');
        ASSERT_TRUE(SetBlockName(name.c_str(), &block));
        EXPECT_GE(MemorySize(block.name), length + 16);
        EXPECT_EQ(GetBlockName(shown, block), length < 261);
        EXPECT_EQ(shown, length < 261 ? name : "");
    }
    faults.allocationsUntilFailure = 0;
    EXPECT_FALSE(SetBlockName("x", &block));
    EXPECT_FALSE(SetBlockText(&block, "x", 1));
    faults = {};
    EXPECT_GE(MemorySize(block.name), 5016u) << "the old name stays";
    EXPECT_EQ(block.data, nullptr);
}

TEST(BlockTextLine, FirstReadableLine) {
    struct Case {
        std::string text;
        int maximum;
        std::string line;
    } const cases[] = {
        {"Hello", 32, "Hello"},
        {"\r\n\r\nHello\r\nWorld", 32, "Hello"},
        {std::string("\0 \x1F\x7Fx", 5), 32, "\x7Fx"},
        {"a\nb\tc\x01", 32, "a b c "},
        {"a" + std::string(1, '\0') + "b", 32, "a b"},
        {std::string(40, 'x'), 32, std::string(32, 'x')},
        {std::string(300, 'x'), 1000, std::string(260, 'x')},
        {"Hello", 0, ""},
        {"Hello", -1, ""},
        {" \r\n ", 32, ""},
        {"", 32, ""},
        {"\xE9\xFE", 32, "\xE9\xFE"},
    };
    for (const Case& c : cases) {
        OwnedBlock block(MakeText(kCommentBlock, c.text));
        EXPECT_EQ(GetBlockTextLine(block, c.maximum), c.line) << c.text;
    }
    EXPECT_STREQ(GetBlockTextLine(Block{}, 32), "");
}
