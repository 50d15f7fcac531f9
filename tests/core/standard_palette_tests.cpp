#include "imaging/standard_palette.h"

#include <gtest/gtest.h>

#include <cstring>

// Colours of the kinds 5, 1, 7, 10 and -5 are of kQuirkEightLevels.
TEST(StandardPalette, SizesAndColours) {
    const std::tuple<int, int, int, int, RgbTriple> cases[] = {
        {0, 2, 1, 1, {255, 255, 255}},   {2, 16, 4, 3, {128, 128, 0}},     {2, 16, 4, 8, {192, 192, 192}},
        {3, 32, 5, 17, {170, 0, 255}},   {4, 64, 6, 27, {85, 170, 255}},   {5, 128, 7, 54, {85, 180, 170}},
        {6, 216, 8, 51, {102, 51, 153}}, {8, 256, 8, 112, {1, 1, 1}},      {8, 256, 8, 143, {254, 254, 254}},
        {9, 256, 8, 77, {77, 77, 77}},   {1, 256, 8, 45, {36, 108, 85}},   {7, 256, 8, 254, {255, 255, 170}},
        {10, 256, 8, 45, {36, 108, 85}}, {-5, 256, 8, 144, {144, 144, 0}},
    };
    for (const auto& [kind, count, itsDepth, index, colour] : cases) {
        SCOPED_TRACE("kind " + std::to_string(kind) + ", colour " + std::to_string(index));
        RgbTriples palette;
        memset(palette, 0xEE, sizeof palette);
        int depth = 0;
        EXPECT_EQ(StandardPalette(palette, nullptr, kind), count);
        EXPECT_EQ(palette[index], colour);
        for (int i = count; i < kPaletteEntries; ++i) EXPECT_EQ(palette[i], RgbTriple{});
        EXPECT_EQ(StandardPalette(nullptr, &depth, kind), count);
        EXPECT_EQ(depth, itsDepth);
    }
}

TEST(StandardPalette, WholeCubes) {
    RgbTriples web, withGreys;
    StandardPalette(web, nullptr, kPaletteWeb);
    StandardPalette(withGreys, nullptr, kPaletteCubeGrey);
    constexpr uint8_t kSix[] = {0, 51, 102, 153, 204, 255}, kRed[] = {0, 43, 85, 128, 170, 213, 255};
    constexpr uint8_t kGreen[] = {0, 36, 73, 109, 146, 182, 219, 255}, kBlue[] = {0, 85, 170, 255};
    for (int i = 0; i < 216; ++i) EXPECT_EQ(web[i], (RgbTriple{kSix[i / 6 % 6], kSix[i / 36], kSix[i % 6]})) << i;
    for (int i = 0; i < 224; ++i)
        EXPECT_EQ(withGreys[i < 112 ? i : i + 32], (RgbTriple{kRed[i / 32], kGreen[i / 4 % 8], kBlue[i % 4]})) << i;
}
