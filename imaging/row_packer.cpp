#include "imaging/row_packer.h"

#include <cstring>

namespace {

void PackBits(uint8_t* row, const uint8_t* pixels, int width) {
    for (int x = 0; x < width; x += 8) {
        unsigned byte = 0;
        for (int bit = 0; bit < 8 && x + bit < width; ++bit) byte |= pixels[x + bit] ? 0x80u >> bit : 0;
        *row++ = static_cast<uint8_t>(byte);
    }
}

void PackNibbles(uint8_t* row, const uint8_t* pixels, int width) {
    for (int x = 0; x + 1 < width; x += 2) *row++ = static_cast<uint8_t>(pixels[x] << 4 | (pixels[x + 1] & 15));
    if (width % 2) *row = static_cast<uint8_t>(pixels[width - 1] << 4);
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
        case 1:
            for (int x = 0; x < width; ++x) pixels[x] = row[x / 8] >> (7 - x % 8) & 1;
            break;
        case 4:
            for (int x = 0; x < width; ++x) pixels[x] = x % 2 ? row[x / 2] & 15 : row[x / 2] >> 4;
            break;
        default: memcpy(pixels, row, static_cast<size_t>(width));
    }
}
