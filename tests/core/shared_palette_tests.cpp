#include "imaging/shared_palette.h"

#include <gtest/gtest.h>

#include "imaging/palette_order.h"
#include "imaging/true_colour.h"
#include "platform/faults.h"
#include "tests/support/literal_colours.h"
#include "tests/support/random_images.h"

namespace {

// A document of images, which it owns.
class Document {
public:
    Document() { EXPECT_TRUE(CreateBlockList(&list_)); }
    ~Document() { DestroyBlockList(&list_); }
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    const BlockList& List() const { return list_; }
    const std::vector<MemoryHandle>& Images() const { return images_; }

    void Add(MemoryHandle image, uint16_t kind = kImageBlock) {
        Block block = {};
        block.kind = kind;
        block.data = image;
        EXPECT_TRUE(AppendBlock(&list_, &block));
        if (image && kind == kImageBlock) images_.push_back(image);
    }

    // An image of one column, the colours as 0xBBGGRR from the bottom up.
    void AddColumn(const std::vector<uint32_t>& colours) {
        int height = static_cast<int>(colours.size());
        MemoryHandle image = CreateImageBitmap(1, height, nullptr, 24);
        MemoryLock lock(image);
        for (int y = 0; y < height; ++y)
            SetImagePixel(lock.As<BitmapHeader>(), 0, height - 1 - y, colours[static_cast<size_t>(y)]);
        Add(image);
    }

private:
    BlockList list_ = {};
    std::vector<MemoryHandle> images_;
};

std::vector<uint32_t> Built(const Document& document, int wanted) {
    Palette palette;
    EXPECT_EQ(BuildSharedPalette(&wanted, palette.data(), document.List()), kSharedPaletteDone);
    std::vector<uint32_t> colours;
    for (size_t i = 0; i < static_cast<size_t>(wanted); ++i)
        colours.push_back(static_cast<uint32_t>(palette[i].red | palette[i].green << 8 | palette[i].blue << 16));
    for (size_t i = static_cast<size_t>(wanted); i < kPaletteEntries; ++i) EXPECT_EQ(palette[i], RgbTriple{});
    return colours;
}

}  // namespace

TEST(BuildSharedPalette, FewColoursAreKeptInOrderOfAppearance) {
    Document document;
    document.Add(nullptr, kHeaderBlock);
    document.Add(nullptr);  // an image that was never read
    document.AddColumn({5, 3, 5, 0xFFFFFF});
    document.Add(AllocateMemory(100), kCommentBlock);
    document.AddColumn({0, 3, 0x010000});
    EXPECT_EQ(Built(document, 256), (std::vector<uint32_t>{5, 3, 0xFFFFFF, 0, 0x010000}));
    EXPECT_EQ(Built(document, 5), (std::vector<uint32_t>{5, 3, 0xFFFFFF, 0, 0x010000}));
}

TEST(BuildSharedPalette, WhiteIsAppendedWhenCellsRunOut) {
    Document document;
    document.AddColumn({1, 2, 3, 0x800000});  // four colours in two cells
    EXPECT_EQ(Built(document, 3), (std::vector<uint32_t>{0, 0x800000, 0xFFFFFF}));
    Document oneCell;  // not even white leaves a place empty for black
    oneCell.AddColumn({1, 2, 3, 4});
    EXPECT_EQ(Built(oneCell, 3), (std::vector<uint32_t>{0, 0xFFFFFF}));
}

TEST(BuildSharedPalette, FirstCutGoesAlongRed) {
    Document document;  // green differs most, red least
    document.AddColumn({0x00F800, 0x000008, 0x000000, 0x00F808});
    // Cells in red order: (0,0) (0,31) | (1,0) (1,31), two pixels being half of the four.
    EXPECT_EQ(Built(document, 2), (std::vector<uint32_t>{0x007C00, 0x007C08}));
}

TEST(BuildSharedPalette, EqualsThePlainForm) {
    Random random(7);
    std::vector<Palette> palettes = TestPalettes(random);
    const int wanted[] = {1, 2, 3, 7, 16, 100, 255, 256};
    for (int i = 0; i < 200; ++i) {
        Document document;
        for (int k = i % 4; k >= 0; --k) {
            int width = static_cast<int>(random() % 60), height = static_cast<int>(random() % 60);
            document.Add(RandomImage(random, width, height, 24, palettes[random() % palettes.size()]));
        }
        Palette expected, palette;
        int count = wanted[i % 8];
        int expectedCount = LiteralSharedPalette(count, expected.data(), document.Images());
        ASSERT_EQ(BuildSharedPalette(&count, palette.data(), document.List()), kSharedPaletteDone);
        ASSERT_EQ(count, expectedCount) << i;
        ASSERT_TRUE(std::equal(palette.begin(), palette.end(), expected.begin())) << i;
    }
}

TEST(BuildSharedPalette, OtherBitCountsCountAsExpanded) {
    Random random(8);
    Palette palette = TestPalettes(random)[6];
    for (int bitCount : {1, 4, 8}) {
        Document plain, expanded;
        plain.Add(RandomImage(random, 37, 11, bitCount, palette));
        expanded.Add(ExpandToTrueColour(plain.Images()[0]));
        for (int wanted : {2, 8, 256}) EXPECT_EQ(Built(plain, wanted), Built(expanded, wanted)) << bitCount;
    }
}

TEST(BuildSharedPalette, CountsOutsideTheRangeStayInBounds) {
    Document document;
    std::vector<uint32_t> many;
    for (uint32_t i = 0; i < 2000; ++i) many.push_back(i * 2999 & 0xFFFFFF);
    document.AddColumn(many);
    EXPECT_EQ(Built(document, 0).size(), 0u);
    EXPECT_EQ(Built(document, -5).size(), 0u);
    EXPECT_EQ(Built(document, 100000), Built(document, 256));
}

TEST(BuildSharedPalette, ExhaustedMemoryLeavesThePaletteBlack) {
    Document document;
    document.AddColumn({1, 2, 3});
    document.Add(CreateImageBitmap(3, 2, nullptr, 8));  // whose rows are unpacked into memory of their own
    for (long allowed : {0, 1}) {
        Palette palette;
        palette.fill({9, 9, 9});
        int wanted = 256;
        faults.allocationsUntilFailure = allowed;
        EXPECT_EQ(BuildSharedPalette(&wanted, palette.data(), document.List()), kSharedPaletteNoMemory);
        faults = {};
        EXPECT_EQ(palette, Palette{});
        EXPECT_EQ(wanted, 256);
    }
}

TEST(SortPaletteByBrightness, EqualLuminancesKeepTheirOrder) {
    // Luminances: 3, 30, 3, 0, 30; the sixth entry is not to be touched.
    const Palette palette = {{{10, 0, 0}, {100, 0, 0}, {12, 0, 0}, {1, 1, 1}, {0, 51, 0}, {255, 255, 255}}};
    Palette brightest = palette, darkest = palette;
    SortPaletteByBrightness(brightest.data(), 5, false);
    SortPaletteByBrightness(darkest.data(), 5, true);
    const Palette expectedBrightest = {{{100, 0, 0}, {0, 51, 0}, {10, 0, 0}, {12, 0, 0}, {1, 1, 1}, {255, 255, 255}}};
    const Palette expectedDarkest = {{{1, 1, 1}, {10, 0, 0}, {12, 0, 0}, {100, 0, 0}, {0, 51, 0}, {255, 255, 255}}};
    EXPECT_EQ(brightest, expectedBrightest);
    EXPECT_EQ(darkest, expectedDarkest);
}

TEST(SortPaletteByBrightness, EqualsTheBubbleSort) {
    Random random(10);
    for (Palette palette : TestPalettes(random))
        for (bool darkestFirst : {false, true}) {
            Palette expected = palette;
            auto brightness = [&](size_t i) {
                return expected[i].red * 30 / 100 + expected[i].green * 59 / 100 + expected[i].blue * 11 / 100;
            };
            for (size_t pass = 0; pass < expected.size(); ++pass)
                for (size_t i = 0; i + 1 < expected.size(); ++i) {
                    int rise = brightness(i + 1) - brightness(i);
                    if (darkestFirst ? rise < 0 : rise > 0) std::swap(expected[i], expected[i + 1]);
                }
            SortPaletteByBrightness(palette.data(), kPaletteEntries, darkestFirst);
            EXPECT_EQ(palette, expected);
        }
}

TEST(DepthForColourCount, IsTheLeastThatHoldsThem) {
    const int cases[][2] = {{-1, 1}, {0, 1},   {1, 1},   {2, 1},   {3, 2},   {4, 2},  {5, 3},
                            {8, 3},  {9, 4},   {16, 4},  {17, 5},  {32, 5},  {33, 6}, {64, 6},
                            {65, 7}, {128, 7}, {129, 8}, {256, 8}, {9999, 8}};
    for (const auto& c : cases) EXPECT_EQ(DepthForColourCount(c[0]), c[1]) << c[0];
}
