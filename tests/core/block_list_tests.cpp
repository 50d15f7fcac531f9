#include "gif/block_list.h"

#include "platform/faults.h"
#include "tests/support/test_blocks.h"

using namespace std::string_literals;

namespace {

std::vector<Block> Comments(const std::string& letters) {
    std::vector<Block> comments;
    for (char letter : letters) comments.push_back(MakeText(kCommentBlock, {&letter, 1}));
    return comments;
}

// The comments' texts and a dot for a header; checks positions and the owner on the way.
std::string LettersOf(const BlockList& list) {
    std::string letters;
    for (const Block& block : list.All()) {
        EXPECT_EQ(block.position, letters.size());
        EXPECT_EQ(block.owner, &list);
        letters += block.kind == kHeaderBlock ? "." : TextOf(block);
    }
    return letters;
}

// A header and one comment for every letter.
BlockList Filled(const std::string& letters) {
    BlockList list;
    EXPECT_TRUE(NewDocument(&list));
    for (const Block& comment : Comments(letters)) Append(&list, comment);
    RenumberBlocks(&list);
    return list;
}

// An image or text with everything that a block can share, and what of it can be seen.
Block FullBlock(bool isImage) {
    Block block = isImage ? MakeImage(2, 1, 4) : MakeText(kCommentBlock, "text");
    EXPECT_TRUE(SetBlockName("name", &block));
    EXPECT_TRUE(block.palette.SetEntry(7, {1, 2, 3}));
    return block;
}
std::string ContentOf(const Block& block) {
    RgbTriple colour = block.palette[7];
    return (block.kind == kImageBlock ? PixelsOf(block) : TextOf(block)) + " " + NameOf(block) + " " +
           std::to_string(colour.red) + " " + std::to_string(colour.green);
}

struct Change {
    const char* what;
    bool ofImage;
    bool (*make)(Block* block);  // false without memory
};

constexpr Change kChanges[] = {
    {"a pixel", true,
     [](Block* block) {
         ImageWriteLock bitmap(&block->data);
         if (bitmap) SetImagePixel(bitmap, 1, 0, 9);
         return bitmap != nullptr;
     }},
    {"a byte of the text", false,
     [](Block* block) {
         WriteLock text(&block->data);
         if (text) text.Bytes()[0] = 'n';
         return static_cast<bool>(text);
     }},
    {"the text", false, [](Block* block) { return SetBlockText(block, "new", 3); }},
    {"the name", true, [](Block* block) { return SetBlockName("another", block); }},
    {"a colour", true,
     [](Block* block) {
         return block->palette.SetEntry(7, {4, 5, 6});
     }},
    {"the palette", true, [](Block* block) { return block->palette.Set({}); }},
};

}  // namespace

TEST(BlockListTest, CapacityGrowsBySteps) {
    BlockList list;
    ASSERT_TRUE(CreateBlockList(&list));
    EXPECT_EQ(list.capacity, 64u);
    for (uint32_t count = 1; count <= 400; ++count) {
        Append(&list, MakeText(kCommentBlock, std::to_string(count)));
        EXPECT_EQ(list.count, count);
        EXPECT_EQ(list.capacity, (count / 64 + 1) * 64);
    }
    for (uint32_t i = 0; i < 400; ++i) EXPECT_EQ(TextOf(BlockAt(list, i)), std::to_string(i + 1));
    Block block;
    for (uint32_t index : {400u, 448u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(GetBlock(list, &block, index)) << index;
        EXPECT_FALSE(PutBlock(&list, block, index)) << index;
    }
}

TEST(BlockListTest, WhereBlocksAreInserted) {
    const std::string many(200, 'm');
    for (const auto& [selection, added, letters, selected] : {std::tuple{-1, "x"s, ".xab"s, 1},
                                                              {0, "x", ".xab", 1},
                                                              {1, "x", ".axb", 2},
                                                              {1, "xyz", ".axyzb", 4},
                                                              {2, "xy", ".abxy", 4},
                                                              {65535, "x", ".abx", 3},
                                                              {1, "", ".ab", 1},
                                                              {1, many, ".a" + many + "b", 201}}) {
        BlockList list = Filled("ab");
        int place = selection;
        EXPECT_TRUE(InsertBlocks(&list, &place, Comments(added)));
        EXPECT_EQ(LettersOf(list), letters);
        EXPECT_EQ(place, selected) << letters;
        EXPECT_EQ(list.capacity, (list.count / 64 + 1) * 64);
    }
}

TEST(BlockListTest, WhichBlocksAreTakenOut) {
    for (const auto& [indexes, letters] : {std::pair{std::vector<uint32_t>{}, ".abcdef"},
                                           {{1}, ".bcdef"},
                                           {{6}, ".abcde"},
                                           {{2, 3, 6}, ".ade"},
                                           {{1, 2, 3, 4, 5, 6}, "."}}) {
        BlockList list = Filled("abcdef");
        RemoveBlocks(&list, indexes);
        EXPECT_EQ(LettersOf(list), letters);
    }
}

TEST(BlockListTest, WithoutMemoryNothingChanges) {
    BlockList list = Filled(std::string(62, 'a'));
    int selection = 2;
    const std::vector<Block> more = Comments("xy");
    faults.allocationsUntilFailure = 0;
    EXPECT_FALSE(AppendBlock(&list, more[0])) << "it would have to grow";
    EXPECT_FALSE(InsertBlocks(&list, &selection, more));
    faults = {};
    EXPECT_EQ(list.capacity, 64u);
    EXPECT_EQ(selection, 2);
    EXPECT_EQ(LettersOf(list), "."s.append(62, 'a'));
}

TEST(BlockListTest, ACopySharesWhatItsBlocksHold) {
    BlockList list = Filled("abc"), copy = Filled("x");
    list.flags = kReadWhole;
    list.after = {list.blocks[1].data, 1, 2};
    EXPECT_TRUE(CopyBlockList(list, &copy));
    EXPECT_EQ(LettersOf(copy), ".abc");
    EXPECT_EQ(LettersOf(list), ".abc");
    EXPECT_EQ(copy.blocks[2].data, list.blocks[2].data);
    EXPECT_EQ(copy.flags, kReadWhole);
    EXPECT_EQ(copy.after.memory, list.after.memory);
    EXPECT_EQ(copy.after.bytes, 2u);
    Append(&copy, Comments("d")[0]);
    RenumberBlocks(&copy);
    EXPECT_EQ(LettersOf(copy), ".abcd");
    faults.allocationsUntilFailure = 0;
    EXPECT_FALSE(CopyBlockList(list, &copy));
    faults = {};
    EXPECT_EQ(copy.count, 0u);
    EXPECT_TRUE(CopyBlockList(BlockList(), &copy));
    EXPECT_EQ(copy.count, 0u);
}

TEST(BlockListTest, AMovedListOwnsItsBlocks) {
    BlockList first = Filled("ab"), second = Filled("xyz");
    second = std::move(first);
    EXPECT_EQ(LettersOf(second), ".ab");
    EXPECT_EQ(LettersOf(first), "");
    EXPECT_EQ(first.capacity + first.reserved, 0u);
    BlockList third(std::move(second));
    EXPECT_EQ(LettersOf(third), ".ab");
    BlockList& itself = third;
    third = std::move(itself);
    EXPECT_EQ(LettersOf(third), ".ab");
}

TEST(BlockValues, CopiesStayAsTheyWere) {
    for (const Change& change : kChanges)
        for (bool withoutMemory : {false, true}) {
            SCOPED_TRACE(change.what);
            BlockList list, other;
            Append(&list, FullBlock(change.ofImage));
            Block copy = BlockAt(list, 0);
            Append(&other, copy);
            const std::string before = ContentOf(copy);
            MemoryLock held(copy.data);
            const Bytes seen(held.Bytes(), held.Bytes() + MemorySize(copy.data));
            if (withoutMemory) faults.allocationsUntilFailure = 0;
            EXPECT_EQ(change.make(&list.blocks[0]), !withoutMemory);
            faults = {};
            EXPECT_EQ(ContentOf(list.blocks[0]) == before, withoutMemory);
            EXPECT_EQ(ContentOf(copy), before);
            EXPECT_EQ(ContentOf(other.blocks[0]), before);
            EXPECT_TRUE(std::equal(seen.begin(), seen.end(), held.Bytes())) << "under a lock";
            DestroyBlockList(&list);
            FreeBlock(&other.blocks[0]);
            EXPECT_EQ(ContentOf(copy), before);
        }
}

TEST(BlockValues, WhatNobodySharesIsWrittenInPlace) {
    Block block = FullBlock(true);
    const void* bitmap = ImageLock(block.data);
    const RgbTriple* colours = block.palette;
    faults.allocationsUntilFailure = 0;
    EXPECT_EQ(static_cast<const void*>(ImageWriteLock(&block.data)), bitmap);
    EXPECT_TRUE(block.palette.SetEntry(7, {}));
    faults = {};
    EXPECT_EQ(block.palette.Colours(), colours);
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
        EXPECT_EQ(GetBlockTextLine(MakeText(kCommentBlock, text), maximum), line) << text;
    }
    EXPECT_EQ(GetBlockTextLine(Block{}, 32), "");
}
