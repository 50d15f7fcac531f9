#include "tests/support/random_images.h"

#include <cstring>

#include "imaging/standard_palette.h"

namespace {

uint8_t Byte(Random& random) {
    return static_cast<uint8_t>(random());
}

RgbTriple Colour(Random& random) {
    return {Byte(random), Byte(random), Byte(random)};
}

Palette CrowdedPalette(Random& random) {
    Palette palette;
    for (RgbTriple& colour : palette)
        colour = {static_cast<uint8_t>(120 + random() % 9), static_cast<uint8_t>(random() % 3 * 8), Byte(random)};
    return palette;
}

// The first `used` entries are random, the others black as in a fresh buffer.
Palette PaletteOf(Random& random, size_t used) {
    Palette palette = {};
    for (size_t i = 0; i < used; ++i) palette[i] = Colour(random);
    return palette;
}

uint32_t PixelOf(RgbTriple colour) {
    return static_cast<uint32_t>(colour.red | colour.green << 8 | colour.blue << 16);
}

}  // namespace

std::vector<Palette> TestPalettes(Random& random) {
    std::vector<Palette> palettes;
    for (int kind = 0; kind < 10; ++kind) {
        palettes.emplace_back();
        StandardPalette(palettes.back().data(), nullptr, kind);
    }
    for (size_t used : {0u, 1u, 2u, 4u, 8u, 16u, 64u, 256u}) palettes.push_back(PaletteOf(random, used));
    palettes.push_back(CrowdedPalette(random));
    palettes.emplace_back();
    palettes.back().fill({255, 255, 255});
    for (size_t i = 1; i < kPaletteEntries; i += 2) palettes.back()[i] = Colour(random);
    return palettes;
}

MemoryHandle RandomImage(Random& random, int width, int height, int bitCount, const Palette& palette) {
    Palette own;
    for (RgbTriple& colour : own) colour = random() % 3 ? Colour(random) : palette[random() % kPaletteEntries];
    MemoryHandle image = CreateImageBitmap(width, height, own.data(), bitCount);
    MemoryLock lock(image);
    auto* bitmap = lock.As<BitmapHeader>();
    auto style = random() % 3;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            uint32_t value = random() & 0xFFFFFF;
            if (style == 1) value = bitCount == 24 ? PixelOf(own[value % 8]) : value % 3;
            if (style == 2) value = static_cast<uint32_t>(x * 3 | (x + y * 5) << 8 | (y * 7 & 255) << 16) & 0xFFFFFF;
            SetImagePixel(bitmap, x, y, value);
        }
    return image;
}

bool SameBitmap(MemoryHandle a, MemoryHandle b) {
    if (!a || !b) return a == b;
    MemoryLock lockA(a), lockB(b);
    auto* bitmapA = lockA.As<const BitmapHeader>();
    auto* bitmapB = lockB.As<const BitmapHeader>();
    const size_t bytes = sizeof(BitmapHeader) + bitmapA->coloursUsed * sizeof(RgbQuad) + bitmapA->imageBytes;
    return memcmp(bitmapA, bitmapB, sizeof(BitmapHeader)) == 0 && memcmp(bitmapA, bitmapB, bytes) == 0;
}
