#include "editing/block_queries.h"

#include <cstring>
#include <tuple>

#include "tests/support/test_blocks.h"

namespace {

Palette FullOf(uint8_t mark) {
    const std::vector<RgbTriple> colours(kPaletteEntries, {mark, mark, mark});
    Palette palette;
    EXPECT_TRUE(palette.Set(colours));
    return palette;
}

// One letter for each block of a document: H and I with a palette of its own, h and i without, c a control.
// The size code of the block at index n is n, its palette full of n + 1.
struct Document : BlockList {
    explicit Document(const char* kinds) {
        for (uint8_t index = 0; kinds[index]; ++index) {
            const char kind = kinds[index];
            const auto packed = static_cast<uint8_t>((kind < 'a' ? kHasPalette : 0) | index);
            Block block = OfKind(strchr("Hh", kind) ? kHeaderBlock : strchr("Ii", kind) ? kImageBlock : kControlBlock);
            if (block.kind == kHeaderBlock) PutHeaderFields(&block, {640, 480, packed, 0, 0});
            if (block.kind == kImageBlock) PutImageFields(&block, {0, 0, 8, 8, packed});
            block.palette = FullOf(static_cast<uint8_t>(index + 1));
            Append(this, block);
        }
        RenumberBlocks(this);
    }
};

}  // namespace

TEST(BlockQueries, FindImagesAroundAPlace) {
    const std::tuple<const char*, uint32_t, int, int> rows[] = {
        {"HcIcI", 2, 2, -1}, {"HcIcI", 3, 4, 2}, {"ii", 1, 1, -1}, {"iii", 9, -1, 2}};  // the last lies behind the end
    for (const auto& [kinds, from, next, previous] : rows) {
        Document document(kinds);
        auto place = [](const Block* image) { return image ? image->position : -1; };
        EXPECT_EQ(place(FindNextImage(document, from)), next) << kinds << from;
        EXPECT_EQ(place(FindPreviousImage(document, from)), previous) << kinds << from;
    }
}

TEST(BlockQueries, TellWhoUsesTheGlobalPalette) {
    const std::tuple<const char*, bool, int> rows[] = {
        {"HII", false, 1}, {"HIi", true, 1}, {"cH", false, 2}, {"hH", false, 0}, {"ci", true, 0}};
    for (const auto& [kinds, used, depth] : rows) {
        Document document(kinds);
        EXPECT_EQ(ImagesUseGlobalPalette(document), used) << kinds;
        EXPECT_EQ(GetGlobalPalette(document).depth, depth) << kinds;
    }
}

TEST(BlockQueries, CopyTheGlobalPaletteToImagesWithoutOne) {
    Document document("HIici");
    Block header = BlockAt(document, 0);
    for (size_t i : {0u, 1u}) ASSERT_TRUE(header.palette.SetEntry(i, {}));
    EXPECT_FALSE(HasColours(header)) << "only its two colours count";
    ASSERT_TRUE(header.palette.SetEntry(1, {0, 0, 1}));
    EXPECT_TRUE(HasColours(header));
    CopyGlobalPaletteToImages(&document, header.palette);
    const int marks[] = {1, 2, 1, 4, 1}, packed[] = {0x80, 0x81, 0x82, 0, 0x84};
    for (uint32_t i = 0; i < 5; ++i) {
        const Block block = BlockAt(document, i);
        EXPECT_EQ(block.palette[255].blue, marks[i]) << i;
        if (block.kind == kImageBlock) {
            EXPECT_EQ(GetImageFields(block).packed, packed[i]) << i;
        }
    }
}

TEST(BlockQueries, BorrowFromTheNextImageOrElseTheHeader) {
    // The kinds, the place of the borrower, what its palette is full of then, and its bits; 0: nothing to borrow.
    const std::tuple<const char*, uint32_t, int, int> rows[] = {
        {"HcI", 1, 3, 3}, {"Hci", 1, 1, 1}, {"HIc", 2, 1, 1}, {"hciI", 1, 99, 0}, {"hcH", 1, 99, 0}};
    for (const auto& [kinds, at, mark, bits] : rows) {
        Document document(kinds);
        Block block = BlockAt(document, at);
        block.palette = FullOf(99);
        EXPECT_EQ(BorrowPalette(&block), bits != 0) << kinds;
        EXPECT_EQ(block.paletteBits, bits) << kinds;
        EXPECT_EQ(block.palette[255].red, mark) << kinds;
    }
}
