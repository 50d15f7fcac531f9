#include "imaging/standard_palette.h"

#include <gtest/gtest.h>

#include <cstring>

#include "imaging/palette_resources.h"
#include "tests/support/gif_bytes.h"

TEST(StandardPalette, SizesAndColours) {
    const struct {
        int kind, count, depth, index;
        RgbTriple colour;
    } cases[] = {
        {0, 2, 1, 1, {255, 255, 255}},     {2, 16, 4, 3, {128, 128, 0}},    {2, 16, 4, 8, {192, 192, 192}},
        {2, 16, 4, 13, {255, 0, 255}},     {3, 32, 5, 14, {85, 255, 0}},    {3, 32, 5, 17, {170, 0, 255}},
        {4, 64, 6, 27, {85, 170, 255}},    {5, 128, 7, 54, {85, 180, 170}}, {6, 216, 8, 51, {102, 51, 153}},
        {8, 256, 8, 144, {128, 146, 0}},   {9, 256, 8, 77, {77, 77, 77}},   {1, 256, 8, 45, {36, 108, 85}},
        {7, 256, 8, 254, {255, 255, 170}}, {10, 256, 8, 45, {36, 108, 85}}, {-5, 256, 8, 45, {36, 108, 85}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE("kind " + std::to_string(c.kind) + ", colour " + std::to_string(c.index));
        RgbTriples palette;
        memset(palette, 0xEE, sizeof palette);
        int depth = 0;
        EXPECT_EQ(StandardPalette(palette, nullptr, c.kind), c.count);
        EXPECT_EQ(palette[c.index], c.colour);
        for (int i = c.count; i < kPaletteEntries; ++i) EXPECT_EQ(palette[i], RgbTriple{});
        EXPECT_EQ(StandardPalette(nullptr, &depth, c.kind), c.count);
        EXPECT_EQ(depth, c.depth);
    }
}

TEST(StandardPalette, WholeCubes) {
    RgbTriples web, withGreys;
    StandardPalette(web, nullptr, kPaletteWeb);
    StandardPalette(withGreys, nullptr, kPaletteCubeGrey);
    for (int i = 0; i < 216; ++i) {
        const int colour[] = {i / 6 % 6 * 51, i / 36 * 51, i % 6 * 51};
        EXPECT_TRUE(web[i].red == colour[0] && web[i].green == colour[1] && web[i].blue == colour[2]) << i;
    }
    constexpr uint8_t kRed[] = {0, 43, 85, 128, 170, 213, 255}, kGreen[] = {0, 36, 73, 109, 146, 182, 219, 255};
    for (int c = 0; c < 224; ++c) {
        RgbTriple colour = {kRed[c / 32], kGreen[c / 4 % 8], static_cast<uint8_t>(c % 4 * 85)};
        EXPECT_EQ(withGreys[c < 112 ? c : c + 32], colour) << c;
    }
    constexpr uint8_t kGreys[] = {1,   8,   16,  24,  32,  41,  49,  57,  65,  74,  82,  90,  98,  106, 115, 123,
                                  131, 139, 148, 156, 164, 172, 180, 189, 197, 205, 213, 222, 230, 238, 246, 254};
    for (int i = 0; i < 32; ++i) EXPECT_EQ(withGreys[112 + i], (RgbTriple{kGreys[i], kGreys[i], kGreys[i]}));
}

TEST(PaletteResources, FilesAndWhatIsBuiltIn) {
    GifBytes head = GifBytes().Text("QUOXRSRC").Text("256 colour palette").Repeat(0, 72 - 26);
    head.Add({0, 1, 0}).Text("CMAP").Add({1, 0, 0, 0, 0, 3});
    for (auto [name, file] : {std::pair{"PALETTE216", "palette216.bin"}, {"PALETTE256G", "palette256g.bin"}}) {
        const Bytes content = ReadAll(std::string(ZEPHYR_SOURCES "/resources/palettes/") + file);
        ASSERT_EQ(content.size(), kPaletteResourceBytes);
        EXPECT_EQ(Bytes(content.begin(), content.begin() + kPaletteResourceColours), head);
        const uint8_t* resource = FindPaletteResource(name);
        ASSERT_NE(resource, nullptr);
        EXPECT_EQ(Bytes(resource, resource + kPaletteResourceBytes), content);
    }
    EXPECT_EQ(FindPaletteResource("PALETTE"), nullptr);
}
