// Whole pixel rows of image bitmaps as true colours.
#pragma once

#include "imaging/image_bitmap.h"

// An image of 1 bit counts as black and white in every conversion, whatever its two colours are.
constexpr bool kQuirkOneBitIsBlackAndWhite = true;

// What the indexes of a bitmap stand for when it is turned into 24 bits.
struct TrueColours {
    RgbQuad of[kPaletteEntries];
};

// The bitmap's own colour table; black and white for a bitmap of 1 bit. All black for one of 24 bits, which has no
// indexes.
TrueColours GetTrueColours(ConstLockedBitmap bitmap);

// A row of 1, 4, 8 or 24 bits as three bytes a pixel: blue, green, red.
void ExpandRow(const uint8_t* row, int width, int bitCount, const TrueColours& colours, uint8_t* bgr);
