#include "tests/support/random_images.h"

#include <cstring>

#include "imaging/standard_palette.h"

namespace {

uint8_t Byte(Random& random) {
    return static_cast<uint8_t>(random());
}

RgbTriple RandomColour(Random& random) {
    return {Byte(random), Byte(random), Byte(random)};
}

Colours CrowdedPalette(Random& random) {
    Colours palette;
    for (RgbTriple& colour : palette)
        colour = {static_cast<uint8_t>(120 + random() % 9), static_cast<uint8_t>(random() % 3 * 8), Byte(random)};
    return palette;
}

// The first `used` entries are random, the others black as in a fresh buffer.
Colours PaletteOf(Random& random, size_t used) {
    Colours palette = {};
    for (size_t i = 0; i < used; ++i) palette[i] = RandomColour(random);
    return palette;
}

uint32_t PixelValue(RgbTriple colour) {
    return static_cast<uint32_t>(colour.red | colour.green << 8 | colour.blue << 16);
}

}  // namespace

std::vector<Colours> TestPalettes(Random& random) {
    std::vector<Colours> palettes;
    for (int kind = 0; kind < 10; ++kind) {
        palettes.emplace_back();
        StandardPalette(palettes.back().data(), nullptr, kind);
    }
    for (size_t used : {0u, 1u, 2u, 4u, 8u, 16u, 64u, 256u}) palettes.push_back(PaletteOf(random, used));
    palettes.push_back(CrowdedPalette(random));
    palettes.emplace_back();
    palettes.back().fill({255, 255, 255});
    for (size_t i = 1; i < kPaletteEntries; i += 2) palettes.back()[i] = RandomColour(random);
    return palettes;
}

MemoryHandle RandomImage(Random& random, int width, int height, int bitCount, const Colours& palette) {
    Colours own;
    for (RgbTriple& colour : own) colour = random() % 3 ? RandomColour(random) : palette[random() % kPaletteEntries];
    MemoryHandle image = CreateImageBitmap(width, height, own.data(), bitCount);
    ImageWriteLock bitmap(&image);
    auto style = random() % 3;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            uint32_t value = random() & 0xFFFFFF;
            if (style == 1) value = bitCount == 24 ? PixelValue(own[value % 8]) : value % 3;
            if (style == 2) value = static_cast<uint32_t>(x * 3 | (x + y * 5) << 8 | (y * 7 & 255) << 16) & 0xFFFFFF;
            SetImagePixel(bitmap, x, y, value);
        }
    return image;
}

bool SameBitmap(const MemoryHandle& a, const MemoryHandle& b) {
    if (!a || !b) return a == b;
    ImageLock bitmapA(a), bitmapB(b);
    const size_t bytes = sizeof(BitmapHeader) + bitmapA->coloursUsed * sizeof(RgbQuad) + bitmapA->imageBytes;
    return memcmp(bitmapA, bitmapB, sizeof(BitmapHeader)) == 0 && memcmp(bitmapA, bitmapB, bytes) == 0;
}
