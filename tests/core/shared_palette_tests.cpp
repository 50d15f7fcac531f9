#include "imaging/shared_palette.h"

#include <algorithm>

#include "imaging/palette_order.h"
#include "tests/support/literal_colours.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

using Colours = std::vector<uint32_t>;  // 0xBBGGRR

// A document of images among blocks that count for nothing.
struct Document : OwnedBlockList {
    Document() {
        for (uint16_t kind : {kHeaderBlock, kImageBlock}) AppendData(kind, nullptr);  // an image that was never read
        AppendData(kCommentBlock, AllocateMemory(100));
    }
    void AppendData(uint16_t kind, MemoryHandle data) {
        Block block = OfKind(kind);
        block.data = data;
        Append(this, block);
    }
    void Add(MemoryHandle image) {
        AppendData(kImageBlock, image);
        images.push_back(image);
    }
    std::vector<MemoryHandle> images;
};

Colours Built(const Document& document, int wanted) {
    Palette palette;
    palette.fill({9, 9, 9});
    EXPECT_EQ(BuildSharedPalette(&wanted, palette.data(), document), kSharedPaletteDone);
    Colours colours;
    for (RgbTriple c : palette) colours.push_back(static_cast<uint32_t>(c.red | c.green << 8 | c.blue << 16));
    EXPECT_EQ(std::count(colours.begin() + wanted, colours.end(), 0u), kPaletteEntries - wanted);
    colours.resize(static_cast<size_t>(wanted));
    return colours;
}

}  // namespace

TEST(BuildSharedPalette, WorkedOutByHand) {
    const std::tuple<std::vector<Colours>, int, Colours> cases[] = {
        {{{5, 3, 5, 0xFFFFFF}, {0, 3, 0x010000}}, 5, {5, 3, 0xFFFFFF, 0, 0x010000}},  // as they first appear
        {{{1, 2, 3, 0x800000}}, 3, {0, 0x800000, 0xFFFFFF}},  // four colours in two cells: white is added
        {{{1, 2, 3, 4}}, 3, {0, 0xFFFFFF}},                   // and no black in the place that is left
        // Green differs most, yet the first cut goes along red: (0, 0) (0, 31) | (1, 0) (1, 31).
        {{{0x00F800, 0x000008, 0x000000, 0x00F808}}, 2, {0x007C00, 0x007C08}},
        {{{1, 2}}, -5, {}},
    };
    for (const auto& [images, wanted, expected] : cases) {
        Document document;
        for (const Colours& row : images) document.Add(MakeRow(24, row));
        EXPECT_EQ(Built(document, wanted), expected) << wanted;
    }
}

TEST(BuildSharedPalette, EqualsThePlainForm) {
    Random random(7);
    const std::vector<Palette> palettes = TestPalettes(random);
    const int bitCounts[] = {24, 8, 24, 4, 1};
    const int wanted[] = {1, 2, 3, 7, 16, 100, 255, 256, 100000};
    for (int i = 0; i < 200; ++i) {
        Document document, expanded;  // images of any depth count as expanded
        for (int k = i % 4; k >= 0; --k) {
            int width = static_cast<int>(random() % 60), height = static_cast<int>(random() % 60);
            const Palette& drawn = palettes[random() % palettes.size()];
            document.Add(RandomImage(random, width, height, bitCounts[i % 5], drawn));
            expanded.Add(LiteralExpand(document.images.back()));
        }
        Palette expected, palette;
        int count = wanted[i % 9];
        int expectedCount = LiteralSharedPalette(std::min(count, kPaletteEntries), expected.data(), expanded.images);
        ASSERT_EQ(BuildSharedPalette(&count, palette.data(), document), kSharedPaletteDone);
        ASSERT_EQ(count, expectedCount) << i;
        ASSERT_TRUE(palette == expected) << i;
    }
}

TEST(SortPaletteByBrightness, EqualsTheBubbleSort) {
    constexpr int kCount = 250;  // the rest stays as it is
    auto brightness = [](RgbTriple c) { return c.red * 30 / 100 + c.green * 59 / 100 + c.blue * 11 / 100; };
    Random random(10);
    for (Palette palette : TestPalettes(random))
        for (bool darkestFirst : {false, true}) {
            Palette expected = palette;
            for (int pass = 0; pass < kCount; ++pass)
                for (size_t i = 0; i + 1 < kCount; ++i) {
                    int rise = brightness(expected[i + 1]) - brightness(expected[i]);
                    if (darkestFirst ? rise < 0 : rise > 0) std::swap(expected[i], expected[i + 1]);
                }
            SortPaletteByBrightness(palette.data(), kCount, darkestFirst);
            EXPECT_EQ(palette, expected);
        }
}
