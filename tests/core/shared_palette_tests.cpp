#include "imaging/shared_palette.h"

#include <algorithm>

#include "imaging/palette_order.h"
#include "tests/support/literal_colours.h"
#include "tests/support/random_images.h"
#include "tests/support/test_blocks.h"

namespace {

using Values = std::vector<uint32_t>;  // 0xBBGGRR
using Images = std::vector<MemoryHandle>;

Values ValuesOf(const SharedPalette& palette) {
    Values values;
    for (RgbTriple c : palette.colours) values.push_back(static_cast<uint32_t>(c.red | c.green << 8 | c.blue << 16));
    EXPECT_EQ(std::count(values.begin() + palette.count, values.end(), 0u), kPaletteEntries - palette.count);
    values.resize(static_cast<size_t>(palette.count));
    return values;
}

}  // namespace

TEST(BuildSharedPalette, WorkedOutByHand) {
    using Rows = std::vector<Values>;
    const std::tuple<Rows, int, Values> cases[] = {
        {{{5, 3, 5, 0xFFFFFF}, {0, 3, 0x010000}}, 5, {5, 3, 0xFFFFFF, 0, 0x010000}},  // as they first appear
        {{{1, 2, 3, 0x800000}}, 3, {0, 0x800000, 0xFFFFFF}},  // four colours in two cells: white is added
        {{{1, 2, 3, 4}}, 3, {0, 0xFFFFFF}},                   // kQuirkBlackIsNeverAdded
        // Green differs most, yet the first cut goes along red: (0, 0) (0, 31) | (1, 0) (1, 31).
        {{{0x00F800, 0x000008, 0x000000, 0x00F808}}, 2, {0x007C00, 0x007C08}},
        {{{1, 2}}, -5, {}},
        {Rows(), 5, {}},
    };
    for (const auto& [rows, wanted, expected] : cases) {
        Images images;
        for (const Values& row : rows) images.push_back(MakeRow(24, row));
        EXPECT_EQ(ValuesOf(*BuildSharedPalette(wanted, images)), expected) << wanted;
    }
    EXPECT_EQ(BuildSharedPalette(5, Images{MakeRow(24, {1}), nullptr}).Why(), Failure::kNoMemory);
}

// kQuirkFirstBoxReachesAsWanted and kQuirkTotalsExchanged among others, which the plain form has too.
TEST(BuildSharedPalette, EqualsThePlainForm) {
    Random random(7);
    const std::vector<Colours> palettes = TestPalettes(random);
    const int bitCounts[] = {24, 8, 24, 4, 1};
    const int wanted[] = {1, 2, 3, 7, 16, 100, 255, 256, 100000};
    for (int i = 0; i < 200; ++i) {
        Images images, expanded;  // images of any depth count as expanded
        for (int k = i % 4; k >= 0; --k) {
            int width = static_cast<int>(random() % 60), height = static_cast<int>(random() % 60);
            const Colours& drawn = palettes[random() % palettes.size()];
            images.push_back(RandomImage(random, width, height, bitCounts[i % 5], drawn));
            expanded.push_back(LiteralExpand(images.back()));
        }
        Colours expected;
        int expectedCount = LiteralSharedPalette(std::min(wanted[i % 9], kPaletteEntries), expected.data(), expanded);
        Result<SharedPalette> palette = BuildSharedPalette(wanted[i % 9], images);
        ASSERT_EQ(palette->count, expectedCount) << i;
        ASSERT_TRUE(std::equal(expected.begin(), expected.end(), palette->colours)) << i;
    }
}

TEST(SortPaletteByBrightness, EqualsTheBubbleSort) {
    constexpr int kCount = 250;  // the rest stays as it is
    auto brightness = [](RgbTriple c) { return c.red * 30 / 100 + c.green * 59 / 100 + c.blue * 11 / 100; };
    Random random(10);
    for (Colours palette : TestPalettes(random))
        for (bool darkestFirst : {false, true}) {
            Colours expected = palette;
            for (int pass = 0; pass < kCount; ++pass)
                for (size_t i = 0; i + 1 < kCount; ++i) {
                    int rise = brightness(expected[i + 1]) - brightness(expected[i]);
                    if (darkestFirst ? rise < 0 : rise > 0) std::swap(expected[i], expected[i + 1]);
                }
            SortPaletteByBrightness(palette.data(), kCount, darkestFirst);
            EXPECT_EQ(palette, expected);
        }
}
