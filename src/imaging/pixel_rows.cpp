#include "imaging/pixel_rows.h"

#include <cstring>

namespace {

uint8_t* PutColour(uint8_t* bgr, RgbQuad colour) {
    bgr[0] = colour.blue;
    bgr[1] = colour.green;
    bgr[2] = colour.red;
    return bgr + 3;
}

}  // namespace

TrueColours GetTrueColours(ConstLockedBitmap bitmap) {
    TrueColours colours = {};
    if (kQuirkOneBitIsBlackAndWhite && bitmap->bitCount == 1)
        colours.of[1] = {255, 255, 255, 0};
    else if (bitmap->bitCount <= 8)
        memcpy(colours.of, ImageColourTable(bitmap), sizeof(RgbQuad) << bitmap->bitCount);
    return colours;
}

void ExpandRow(const uint8_t* row, int width, int bitCount, const TrueColours& colours, uint8_t* bgr) {
    if (bitCount == 24) {
        memcpy(bgr, row, size_t{3} * static_cast<size_t>(width));
        return;
    }
    for (int x = 0; x < width; ++x) bgr = PutColour(bgr, colours.of[IndexAt(row, x, bitCount)]);
}
