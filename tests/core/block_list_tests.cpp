#include "gif/block_list.h"

#include "platform/faults.h"
#include "tests/support/scripted_prompts.h"
#include "tests/support/test_blocks.h"

using namespace std::string_literals;

namespace {

// A header and one comment for every letter.
class BlockListTest : public testing::Test {
protected:
    BlockListTest() { prompts = {}; }

    void Fill(const std::string& letters) {
        DestroyBlockList(&list_);
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

    OwnedBlockList list_;
};

}  // namespace

TEST_F(BlockListTest, CapacityGrowsBySteps) {
    ASSERT_TRUE(CreateBlockList(&list_));
    EXPECT_EQ(list_.capacity, 64u);
    for (uint32_t count = 1; count <= 400; ++count) {
        Append(&list_, MakeText(kCommentBlock, std::to_string(count)));
        EXPECT_EQ(list_.count, count);
        EXPECT_EQ(list_.capacity, (count / 64 + 1) * 64);
    }
    for (uint32_t i = 0; i < 400; ++i) EXPECT_EQ(TextOf(BlockAt(list_, i)), std::to_string(i + 1));
    Block block = {};
    for (uint32_t index : {400u, 448u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(GetBlock(list_, &block, index)) << index;
        EXPECT_FALSE(PutBlock(&list_, block, index)) << index;
    }
}

TEST_F(BlockListTest, WhereBlocksAreInserted) {
    for (auto [selection, letters, selected] :
         {std::tuple{-1, ".xab", 1}, {0, ".xab", 1}, {1, ".axb", 2}, {2, ".abx", 3}, {65535, ".abx", 3}}) {
        Fill("ab");
        Block ready = MakeText(kCommentBlock, "x");
        int place = selection;
        EXPECT_TRUE(InsertBlock(nullptr, &list_, &place, kCommentBlock, &ready, nullptr));
        EXPECT_EQ(Letters(), letters) << selection;
        EXPECT_EQ(place, selected);
    }
}

TEST_F(BlockListTest, Deletion) {
    Fill("abc");
    const std::tuple<int, bool, const char*, int, unsigned> cases[] = {
        {0, false, ".abc", 0, IDS_HEADER_FIXED},
        {-1, false, ".abc", -1, IDS_BLOCK_ACCESS},
        {4, false, ".abc", 4, IDS_BLOCK_ACCESS},
        {2, true, ".ac", 2, 0},
        {2, true, ".a", 1, 0},
        {1, true, ".", 0, 0},
    };
    for (const auto& [from, deletes, letters, selected, message] : cases) {
        prompts = {};
        int selection = from;
        EXPECT_EQ(DeleteBlock(nullptr, &list_, &selection), deletes);
        EXPECT_EQ(Letters(), letters);
        EXPECT_EQ(selection, selected);
        std::vector<std::string> said;
        if (message) said.emplace_back(LoadStr(message));
        EXPECT_EQ(prompts.messages, said);
    }
}

TEST_F(BlockListTest, ManyBlocksComeAndGoAtOnce) {
    for (const auto& [indexes, letters] : {std::pair{std::vector<uint32_t>{}, ".abcdef"},
                                           {{1}, ".bcdef"},
                                           {{6}, ".abcde"},
                                           {{2, 3, 6}, ".ade"},
                                           {{1, 2, 3, 4, 5, 6}, "."}}) {
        Fill("abcdef");
        EXPECT_TRUE(DeleteBlocks(&list_, indexes));
        EXPECT_EQ(Letters(), letters);
    }
    Fill("abc");
    for (const auto& indexes : {std::vector<uint32_t>{0}, {0, 2}, {2, 4}}) EXPECT_FALSE(DeleteBlocks(&list_, indexes));
    EXPECT_EQ(Letters(), ".abc");

    const std::string many(200, 'm');
    for (const auto& [at, added, letters] : {std::tuple{1u, "x"s, ".xab"s},
                                             {2, "xyz", ".axyzb"},
                                             {3, "xy", ".abxy"},
                                             {99, "x", ".abx"},
                                             {1, "", ".ab"},
                                             {2, many, ".a" + many + "b"}}) {
        Fill("ab");
        OwnedBlockList from;
        ASSERT_TRUE(CreateBlockList(&from));
        for (char letter : added) Append(&from, MakeText(kCommentBlock, {&letter, 1}));
        EXPECT_TRUE(InsertBlocks(&list_, at, &from));
        EXPECT_EQ(Letters(), letters);
        EXPECT_EQ(from.count, 0u);
        EXPECT_EQ(list_.capacity, (list_.count / 64 + 1) * 64);
    }
    OwnedBlockList from;
    for (char letter : many) Append(&from, MakeText(kCommentBlock, {&letter, 1}));
    Fill("ab");
    faults.allocationsUntilFailure = 0;
    EXPECT_FALSE(InsertBlocks(&list_, 1, &from));
    faults = {};
    for (long locks : {0, 1}) {
        faults.locksUntilFailure = locks;
        EXPECT_FALSE(InsertBlocks(&list_, 1, &from));
    }
    faults.locksUntilFailure = 0;
    EXPECT_FALSE(DeleteBlocks(&list_, {1}));
    faults = {};
    EXPECT_EQ(Letters(), ".ab");
    EXPECT_EQ(from.count, 200u);
}

TEST_F(BlockListTest, FailuresChangeNothing) {
    Fill(std::string(62, 'a'));
    int selection = 2;
    Block block = {};
    faults.allocationsUntilFailure = 0;
    EXPECT_FALSE(AppendBlock(&list_, &block)) << "it would have to grow";
    EXPECT_FALSE(InsertBlock(nullptr, &list_, &selection, kControlBlock, nullptr, nullptr));
    faults = {};
    EXPECT_EQ(prompts.messages, std::vector<std::string>{LoadStr(IDS_OUT_OF_MEMORY)});
    prompts = {};
    EXPECT_EQ(list_.capacity, 64u);
    faults.locksUntilFailure = 0;
    EXPECT_FALSE(AppendBlock(&list_, &block));
    EXPECT_FALSE(RenumberBlocks(&list_));
    EXPECT_FALSE(DeleteBlock(nullptr, &list_, &selection));
    faults.locksUntilFailure = 1;  // the new comment's text has been written
    EXPECT_FALSE(InsertBlock(nullptr, &list_, &selection, kCommentBlock, nullptr, nullptr));
    faults = {};
    EXPECT_EQ(prompts.messages, std::vector<std::string>(2, LoadStr(IDS_BLOCK_ACCESS)));
    EXPECT_EQ(selection, 2);
    EXPECT_EQ(Letters(), "." + std::string(62, 'a'));
}

TEST(BlockTextLine, FirstReadableLine) {
    const std::tuple<std::string, int, std::string> cases[] = {
        {"\r\n\r\nHello\r\nWorld", 32, "Hello"},
        {std::string("\0 \x1F\x7F\0\n\x1F\xFE", 8), 32, "\x7F   \xFE"},
        {std::string(40, 'x'), 32, std::string(32, 'x')},
        {std::string(300, 'x'), 1000, std::string(260, 'x')},
        {"Hello", -1, ""},
        {" \r\n ", 32, ""},
    };
    for (const auto& [text, maximum, line] : cases) {
        OwnedBlock block(MakeText(kCommentBlock, text));
        EXPECT_EQ(GetBlockTextLine(block, maximum), line) << text;
    }
    EXPECT_STREQ(GetBlockTextLine(Block{}, 32), "");
}
