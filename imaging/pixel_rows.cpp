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

void UnpackRow(const uint8_t* row, int width, int bitCount, uint8_t* indexes) {
    switch (bitCount) {
        case 1:
            for (int x = 0; x < width; ++x) indexes[x] = IndexAt(row, x, 1);
            break;
        case 4:
            for (int x = 0; x < width; ++x) indexes[x] = IndexAt(row, x, 4);
            break;
        default: memcpy(indexes, row, static_cast<size_t>(width)); break;
    }
}

void PackRow(const uint8_t* indexes, int width, int bitCount, uint8_t* row) {
    if (bitCount == 8) {
        memcpy(row, indexes, static_cast<size_t>(width));
        return;
    }
    int perByte = 8 / bitCount;
    int mask = (1 << bitCount) - 1;
    for (int x = 0; x < width; ++x) {
        int shift = (perByte - 1 - x % perByte) * bitCount;
        row[x / perByte] = static_cast<uint8_t>(row[x / perByte] | (indexes[x] & mask) << shift);
    }
}

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
