#include "imaging/pixel_rows.h"

#include <cstring>

namespace {

uint8_t* PutColour(uint8_t* bgr, RgbQuad colour) {
    bgr[0] = colour.blue;
    bgr[1] = colour.green;
    bgr[2] = colour.red;
    return bgr + 3;
}

uint8_t IndexAt(const uint8_t* row, int x, int bitCount) {
    switch (bitCount) {
        case 1: return row[x / 8] >> (7 - x % 8) & 1;
        case 4: return x % 2 ? row[x / 2] & 15 : row[x / 2] >> 4;
        default: return row[x];
    }
}

}  // namespace

void GetTrueColours(ConstLockedBitmap bitmap, TrueColours* colours) {
    *colours = {};
    if (bitmap->bitCount == 1) colours->colours[1] = {255, 255, 255, 0};
    if (bitmap->bitCount == 4 || bitmap->bitCount == 8)
        memcpy(colours->colours, ImageColourTable(bitmap), sizeof(RgbQuad) << bitmap->bitCount);
}

void ExpandRow(const uint8_t* row, int width, int bitCount, const TrueColours& colours, uint8_t* bgr) {
    if (bitCount == 24) {
        memcpy(bgr, row, size_t{3} * static_cast<size_t>(width));
        return;
    }
    for (int x = 0; x < width; ++x) bgr = PutColour(bgr, colours.colours[IndexAt(row, x, bitCount)]);
}
