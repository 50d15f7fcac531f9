#include "editing/block_queries.h"

#include <cstring>
#include <tuple>

#include "gif/source_bytes.h"
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

TEST(BlockQueries, OnlyImagesThatGetAPaletteCountAsChanged) {
    Document document("HIcii");
    for (Block& block : document.All()) GiveSource(&block, "bytes");
    document.blocks[3].data = CreateImageBitmap(8, 8, nullptr, 8);
    EXPECT_TRUE(ImagesAreBoundToGlobalPalette(document));
    CopyGlobalPaletteToImages(&document, FullOf(1));
    const bool kept[] = {true, true, true, false, true};
    for (uint32_t i = 0; i < 5; ++i) EXPECT_EQ(HasSource(document.blocks[i]), kept[i]) << i;
    EXPECT_EQ(GetImageFields(document.blocks[3]).packed, 0x83);
    EXPECT_EQ(GetImageFields(document.blocks[4]).packed, 4) << "the bytes of one without pixels have no palette";
    document.blocks[4].source = {};
    EXPECT_FALSE(ImagesAreBoundToGlobalPalette(document));
}

// A text of so many full sub-blocks behind what comes before them.
std::string Chain(std::string before, size_t fullBlocks, char text, const std::string& after) {
    for (size_t i = 0; i < fullBlocks; ++i) before += '\xFF' + std::string(255, text);
    return before + after;
}

TEST(BlockQueries, TextIsCutWhereTheFileHasMore) {
    using std::string_literals::operator""s;
    const std::string plain = "!\1\x0C"s + std::string(12, '\0');
    const size_t full = kMaxTextBytes / 255;  // and 127 bytes
    const std::string rest = "\x7F" + std::string(127, 'x') + '\0', more = "\x80" + std::string(128, 'x') + '\0';
    // The kind, the bytes of the file, and whether a block that holds all it can holds less than them.
    const std::tuple<uint16_t, std::string, bool> rows[] = {
        {kCommentBlock, Chain("!\xFE", full, 'x', rest), false},
        {kCommentBlock, Chain("!\xFE", full, 'x', more), true},
        {kCommentBlock, Chain("!\xFE", full, 'x', "\xFFthe file ends here"), false},
        {kCommentBlock, Chain("!\xFE", full, 'x', "\1\7" + more.substr(0, 128)),
         false},  // of a control byte nothing stays
        {kCommentBlock, Chain("!\xFE", full / 2, '\r', rest), false},
        {kCommentBlock, Chain("!\xFE", full / 2, '\r', more), true},
        {kPlainTextBlock, Chain(plain, full, '\r', rest), false},
        {kPlainTextBlock, Chain(plain, full, '\7', more), true},
        {kPlainTextBlock, Chain("!\1\x0D"s + std::string(13, '\0'), full, 'x', more), true},
        {kPlainTextBlock, "!\1"s, false}};
    int row = 0;
    for (const auto& [kind, own, isCut] : rows) {
        SCOPED_TRACE(row++);
        Block block = MakeText(kind, std::string(kMaxTextBytes, 'x'));
        EXPECT_FALSE(IsTextCut(block)) << "nobody has more";
        GiveSource(&block, own, "stray");
        EXPECT_EQ(IsTextCut(block), isCut);
        ASSERT_TRUE(MarkChanged(&block));
        EXPECT_FALSE(IsTextCut(block)) << "the block's is all there is";
    }
    Block small = MakeText(kCommentBlock, "small");
    GiveSource(&small, Chain("!\xFE", full + 1, '\7', "\5small"s + '\0'));
    EXPECT_FALSE(IsTextCut(small));
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
