// Whole pixel rows of image bitmaps in forms that are easy to compute with.
#pragma once

#include "imaging/image_bitmap.h"

// The pixels of a row with 1, 4 or 8 bits as one byte each.
void UnpackRow(const uint8_t* row, int width, int bitCount, uint8_t* indexes);

// Packs one byte a pixel into a row of 1, 4 or 8 bits, keeping the low bits of each. The row is all zero before, as in
// a new bitmap, and its padding stays so.
void PackRow(const uint8_t* indexes, int width, int bitCount, uint8_t* row);

// What the indexes of a bitmap stand for when it is turned into 24 bits.
struct TrueColours {
    RgbQuad colours[kPaletteEntries];
};

// The bitmap's own colour table; black and white for a bitmap of 1 bit, whatever its two colours are.
void GetTrueColours(ConstLockedBitmap bitmap, TrueColours* colours);

// A row of 1, 4, 8 or 24 bits as three bytes a pixel: blue, green, red.
void ExpandRow(const uint8_t* row, int width, int bitCount, const TrueColours& colours, uint8_t* bgr);
