#include "imaging/transparency_mask.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

namespace {

constexpr int kHeight = 3;

struct Case {
    int depth;        // of the image
    uint32_t pixels;  // values that may occur: 0 to this one
    uint32_t transparent;
};

// Few different pixels, so that each value occurs in runs and alone.
uint32_t PixelAt(int x, int y, uint32_t most) {
    uint32_t mixed = static_cast<uint32_t>(x * 7 + y * 13) * 2654435761u;
    return most > 255 ? (mixed >> 30) * 0x10203u : (mixed >> 24) % (most + 1);
}

void Check(int width, const Case& given) {
    SCOPED_TRACE(testing::Message() << "depth " << given.depth << ", width " << width << ", transparent "
                                    << given.transparent);
    OwnedMemory image(CreateImageBitmap(width, kHeight, nullptr, given.depth));
    MemoryLock pixels(image.Get());
    ASSERT_TRUE(pixels);
    auto* bitmap = pixels.As<BitmapHeader>();
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < width; ++x) SetImagePixel(bitmap, x, y, PixelAt(x, y, given.pixels));

    OwnedMemory expected(CreateImageBitmap(width, kHeight, nullptr, 1));
    MemoryLock expectedLock(expected.Get());
    auto* expectedMask = expectedLock.As<BitmapHeader>();
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < width; ++x)
            SetImagePixel(expectedMask, x, y, GetImagePixel(bitmap, x, y) != given.transparent);

    OwnedMemory made(MakeTransparencyMask(bitmap, given.transparent));
    MemoryLock madeLock(made.Get());
    ASSERT_TRUE(madeLock);
    auto* mask = madeLock.As<BitmapHeader>();
    ASSERT_EQ(mask->bitCount, 1);
    ASSERT_EQ(mask->width, width);
    ASSERT_EQ(mask->height, kHeight);
    // The padding counts too: GDI copies whole words.
    EXPECT_EQ(memcmp(ImagePixels(mask), ImagePixels(expectedMask), size_t{ImageRowBytes(mask)} * kHeight), 0);
}

}  // namespace

TEST(TransparencyMask, EqualsThePixelByPixelDefinition) {
    constexpr Case kCases[] = {
        {1, 1, 0},
        {1, 1, 1},
        {1, 1, 2},
        {1, 1, kNoPixel},
        {4, 15, 0},
        {4, 15, 7},
        {4, 15, 15},
        {4, 15, 23},
        {8, 3, 0},
        {8, 3, 3},
        {8, 255, 255},
        {8, 255, 256},
        {8, 3, 0x103},
        {24, 0x30609, 0},
        {24, 0x30609, 0x10203},
        {24, 0x30609, 0x30609},
        {24, 0x30609, kNoPixel},
    };
    for (const Case& given : kCases)
        for (int width : {1, 2, 7, 8, 9, 31, 32, 33, 67}) Check(width, given);
}

TEST(TransparencyMask, IsBlackAndWhite) {
    OwnedMemory image(CreateImageBitmap(5, 2, nullptr, 8));
    MemoryLock lock(image.Get());
    OwnedMemory mask(MakeTransparencyMask(lock.As<BitmapHeader>(), 0));
    RgbTriples colours = {};
    ASSERT_TRUE(GetImageInfo(mask.Get(), nullptr, nullptr, nullptr, colours));
    EXPECT_EQ(colours[0], (RgbTriple{0, 0, 0}));
    EXPECT_EQ(colours[1], (RgbTriple{255, 255, 255}));
}

TEST(TransparencyMask, ExistsForImagesWithoutPixels) {
    for (auto [width, height] : {std::pair{0, 5}, {5, 0}, {0, 0}}) {
        OwnedMemory image(CreateImageBitmap(width, height, nullptr, 4));
        MemoryLock lock(image.Get());
        OwnedMemory mask(MakeTransparencyMask(lock.As<BitmapHeader>(), 0));
        EXPECT_TRUE(mask);
    }
}
