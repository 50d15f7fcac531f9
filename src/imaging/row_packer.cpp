#include "imaging/row_packer.h"

#include <cstring>

namespace {

uint8_t Byte(const uint8_t* pixels, int count) {
    unsigned bits = 0;
    for (int i = 0; i < count; ++i) bits |= (pixels[i] ? 0x80u : 0u) >> i;
    return static_cast<uint8_t>(bits);
}

void PackBits(uint8_t* row, const uint8_t* pixels, int width) {
    for (; width >= 8; width -= 8, pixels += 8) *row++ = Byte(pixels, 8);
    if (width > 0) *row = Byte(pixels, width);
}

void PackNibbles(uint8_t* row, const uint8_t* pixels, int width) {
    for (int x = 0; x + 1 < width; x += 2) *row++ = static_cast<uint8_t>(pixels[x] << 4 | (pixels[x + 1] & 15));
    if (width % 2) *row = static_cast<uint8_t>(pixels[width - 1] << 4);
}

void UnpackBits(uint8_t* pixels, const uint8_t* row, int width) {
    for (; width >= 8; width -= 8, pixels += 8, ++row)
        for (int x = 0; x < 8; ++x) pixels[x] = IndexAt(row, x, 1);
    for (int x = 0; x < width; ++x) pixels[x] = IndexAt(row, x, 1);
}

void UnpackNibbles(uint8_t* pixels, const uint8_t* row, int width) {
    for (; width >= 2; width -= 2, pixels += 2, ++row) {
        pixels[0] = *row >> 4;
        pixels[1] = *row & 15;
    }
    if (width > 0) *pixels = *row >> 4;
}

}  // namespace

void PackRow(uint8_t* row, const uint8_t* pixels, int width, int bitCount) {
    switch (bitCount) {
        case 1: return PackBits(row, pixels, width);
        case 4: return PackNibbles(row, pixels, width);
        default: memcpy(row, pixels, static_cast<size_t>(width));
    }
}

void UnpackRow(uint8_t* pixels, const uint8_t* row, int width, int bitCount) {
    switch (bitCount) {
        case 1: return UnpackBits(pixels, row, width);
        case 4: return UnpackNibbles(pixels, row, width);
        default: memcpy(pixels, row, static_cast<size_t>(width));
    }
}
