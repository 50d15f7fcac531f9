#include "imaging/transparency_mask.h"

#include "imaging/standard_palette.h"

namespace {

// Calls isOpaque(x) for every column, and packs the answers into `to`, the leftmost in the most significant bit.
template <typename IsOpaque>
void PackRow(uint8_t* to, int width, IsOpaque isOpaque) {
    int x = 0;
    for (; x + 8 <= width; x += 8) {
        unsigned bits = 0;
        for (int i = 0; i < 8; ++i) bits = bits << 1 | (isOpaque(x + i) ? 1u : 0u);
        *to++ = static_cast<uint8_t>(bits);
    }
    unsigned rest = 0;
    for (int i = x; i < width; ++i) rest |= (isOpaque(i) ? 0x80u : 0u) >> (i - x);
    if (x < width) *to = static_cast<uint8_t>(rest);
}

void MaskRow(uint8_t* to, const uint8_t* row, int width, int bitCount, uint32_t transparent) {
    switch (bitCount) {
        case 1: PackRow(to, width, [=](int x) { return (uint32_t{row[x / 8]} >> (7 - x % 8) & 1) != transparent; }); break;
        case 4:
            PackRow(to, width, [=](int x) { return (x % 2 ? row[x / 2] & 15u : uint32_t{row[x / 2]} >> 4) != transparent; });
            break;
        case 8: PackRow(to, width, [=](int x) { return row[x] != transparent; }); break;
        case 24:
            PackRow(to, width, [=](int x) {
                const uint8_t* pixel = row + 3 * x;
                return (uint32_t{pixel[0]} << 16 | uint32_t{pixel[1]} << 8 | pixel[2]) != transparent;
            });
            break;
    }
}

}  // namespace

MemoryHandle MakeTransparencyMask(ConstLockedBitmap bitmap, uint32_t transparentIndex) {
    RgbTriples blackAndWhite;
    int depth = 0;
    StandardPalette(blackAndWhite, &depth, kPaletteBlackWhite);
    OwnedMemory mask(CreateImageBitmap(bitmap->width, bitmap->height, blackAndWhite, depth));
    MemoryLock lock(mask.Get());
    if (!lock) return nullptr;
    auto* bits = lock.As<BitmapHeader>();
    for (int y = 0; y < bitmap->height; ++y)
        MaskRow(ImageRow(bits, y), ImageRow(bitmap, y), bitmap->width, bitmap->bitCount, transparentIndex);
    return mask.Release();
}
