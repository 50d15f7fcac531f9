#include "editing/block_queries.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "gif/descriptor.h"
#include "platform/faults.h"

namespace {

// One letter for each block of a document: H and I with a palette of its own, h and i without, c any other kind.
class Document {
public:
    explicit Document(const char* kinds) {
        EXPECT_TRUE(CreateBlockList(&list_));
        for (const char* kind = kinds; *kind; ++kind) Append(*kind, static_cast<uint8_t>(kind - kinds + 1));
        RenumberBlocks(&list_);
    }
    ~Document() { DestroyBlockList(&list_); }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    BlockList* List() { return &list_; }
    Block At(uint32_t index) {
        Block block = {};
        EXPECT_TRUE(GetBlock(list_, &block, index));
        return block;
    }

private:
    // The size code of the block at index n is n, its palette full of n + 1.
    void Append(char kind, uint8_t mark) {
        Block block = {};
        auto packed = static_cast<uint8_t>((kind < 'a' ? kHasPalette : 0) | (mark - 1));
        block.kind = strchr("Hh", kind) ? kHeaderBlock : strchr("Ii", kind) ? kImageBlock : kControlBlock;
        if (block.kind == kHeaderBlock) PutHeaderFields(&block, {640, 480, packed, 0, 0});
        if (block.kind == kImageBlock) PutImageFields(&block, {0, 0, 8, 8, packed});
        memset(block.palette, mark, kPaletteBytes);
        EXPECT_TRUE(AppendBlock(&list_, &block));
    }

    BlockList list_ = {};
};

TEST(BlockQueries, FindImagesAroundAPlace) {
    struct Row {
        const char* kinds;
        uint32_t from;
        int next, previous;
    } rows[] = {
        {"HcIcI", 0, 2, -1}, {"HcIcI", 2, 2, -1}, {"HcIcI", 3, 4, 2}, {"HcIcI", 5, -1, 4}, {"Hi", 1, 1, -1},
        {"ii", 1, 1, -1},    {"ii", 2, -1, 1},    {"H", 0, -1, -1},   {"iii", 9, -1, 2},  // places behind the end
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.kinds << " at " << row.from);
        Document document(row.kinds);
        Block image;
        int next = FindNextImage(*document.List(), row.from, &image) ? image.position : -1;
        EXPECT_EQ(next, row.next);
        int previous = FindPreviousImage(*document.List(), row.from, &image) ? image.position : -1;
        EXPECT_EQ(previous, row.previous);
    }
}

TEST(BlockQueries, TellWhoUsesTheGlobalPalette) {
    struct Row {
        const char* kinds;
        bool used;
        int depth;
    } rows[] = {{"H", false, 1},  {"h", false, 0},  {"HII", false, 1}, {"HIi", true, 1},
                {"cH", false, 2}, {"hH", false, 0}, {"ci", true, 0},   {"", false, 0}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.kinds);
        Document document(row.kinds);
        EXPECT_EQ(ImagesUseGlobalPalette(*document.List()), row.used);
        EXPECT_EQ(GetGlobalPalette(*document.List(), nullptr), row.depth);
    }
}

TEST(BlockQueries, CopyTheGlobalPaletteToImagesWithoutOne) {
    Document document("HIici");
    ASSERT_TRUE(CopyGlobalPaletteToImages(document.List(), document.At(0).palette));
    const int marks[] = {1, 2, 1, 4, 1};
    const int packed[] = {-1, 0x81, 0x82, -1, 0x84};
    for (uint32_t i = 0; i < 5; ++i) {
        Block block = document.At(i);
        EXPECT_EQ(block.palette[255].blue, marks[i]) << i;
        if (packed[i] >= 0) {
            EXPECT_EQ(GetImageFields(block).packed, packed[i]) << i;
        }
    }
    EXPECT_FALSE(ImagesUseGlobalPalette(*document.List()));
}

TEST(BlockQueries, CopyingFailsWhenTheListCannotBeRead) {
    Document document("Hi");
    RgbTriples palette = {};
    faults.locksUntilFailure = 0;
    EXPECT_FALSE(CopyGlobalPaletteToImages(document.List(), palette));
    faults.locksUntilFailure = Faults::kNever;
}

TEST(BlockQueries, BorrowFromTheNextImageOrElseTheHeader) {
    struct Row {
        const char* kinds;
        uint32_t at;
        int mark, bits;  // 0: nothing to borrow
    } rows[] = {{"HcI", 1, 3, 3}, {"Hci", 1, 1, 1},  {"HIc", 2, 1, 1},
                {"hci", 1, 0, 0}, {"hciI", 1, 0, 0}, {"hc", 1, 0, 0}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.kinds);
        Document document(row.kinds);
        Block block = document.At(row.at);
        memset(block.palette, 99, kPaletteBytes);
        EXPECT_EQ(BorrowPalette(&block), row.bits != 0);
        EXPECT_EQ(block.paletteBits, row.bits);
        EXPECT_EQ(block.palette[255].red, row.bits ? row.mark : 99);
    }
}

}  // namespace
