#include "imaging/image_bitmap.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/temp_folder.h"

TEST(ImageBitmap, LayoutByDepth) {
    const struct {
        int width, height, depth;
        uint16_t bitCount;
        uint32_t colours, rowBytes;
    } cases[] = {
        {33, 3, 1, 1, 2, 8},  {8, 2, 2, 4, 16, 4},   {9, 2, 4, 4, 16, 8},
        {5, 7, 5, 8, 256, 8}, {5, 7, 0, 24, 0, 16},  {1, 2, 24, 24, 0, 4},
        {0, 9, 8, 8, 256, 0}, {9, 0, 8, 8, 256, 12}, {65535, 1, 1, 1, 2, 8192},
    };
    RgbTriples colours;
    for (int i = 0; i < kPaletteEntries; ++i)
        colours[i] = {static_cast<uint8_t>(i), static_cast<uint8_t>(i + 1), static_cast<uint8_t>(i + 2)};
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        MemoryHandle image = CreateImageBitmap(c.width, c.height, colours, c.depth);
        ImageLock lock(image);
        ConstLockedBitmap header = lock;
        uint32_t imageBytes = c.rowBytes * static_cast<uint32_t>(c.height);
        const BitmapHeader expected = {40, c.width, c.height, 1, c.bitCount, 0, imageBytes, 0, 0, c.colours, c.colours};
        EXPECT_EQ(memcmp(header, &expected, sizeof expected), 0);
        EXPECT_EQ(ImagePixels(header), reinterpret_cast<const uint8_t*>(header) + 40 + 4 * c.colours);
        EXPECT_EQ(Bytes(ImagePixels(header), ImagePixels(header) + imageBytes), Bytes(imageBytes));
        for (uint32_t i = 0; i < c.colours; ++i) {
            const uint8_t quad[4] = {colours[i].blue, colours[i].green, colours[i].red, 0};
            EXPECT_EQ(memcmp(ImageColourTable(header) + i, quad, 4), 0);
        }
        RgbTriples read = {};
        // Without colours it is kQuirkColoursOfTrueColour.
        EXPECT_EQ(GetImagePalette(header, read), c.colours ? static_cast<int>(c.colours) : 1);
        for (uint32_t i = 0; i < kPaletteEntries; ++i) EXPECT_EQ(read[i], i < c.colours ? colours[i] : RgbTriple{});
    }
}

TEST(ImageBitmap, RefusesSizesAndWhatIsNone) {
    const int cases[][3] = {{-1, 1, 8},    {1, -1, 8},        {65536, 1, 1},
                            {1, 65536, 1}, {65535, 65535, 8}, {65535, 65535, 24}};
    for (const auto& c : cases) EXPECT_EQ(CreateImageBitmap(c[0], c[1], nullptr, c[2]), nullptr) << c[0];
    EXPECT_FALSE(GetImageInfo(nullptr));
}

TEST(ImageBitmap, PlacesOutside) {
    for (int depth : {1, 4, 8, 24}) {
        MemoryHandle image = CreateImageBitmap(3, 2, nullptr, depth);
        ImageWriteLock bitmap(&image);
        for (auto [x, y] : {std::pair{3, 0}, {0, 2}, {-1, 0}, {0, -1}, {1 << 30, 1 << 30}}) {
            SetImagePixel(bitmap, x, y, 1);
            EXPECT_EQ(GetImagePixel(bitmap, x, y), kNoPixel);
        }
        SetImagePixel(bitmap, 0, 0, kNoPixel);
        EXPECT_EQ(Bytes(ImagePixels(bitmap), ImagePixels(bitmap) + bitmap->imageBytes), Bytes(bitmap->imageBytes));
    }
}
