// Pixels as bytes, one a pixel, and as the packed rows of a bitmap.
#pragma once

#include "imaging/image_bitmap.h"

// Packs `width` pixel values into a bitmap row of 1, 4 or 8 bits a pixel: any value but 0 is a 1 bit, nibbles take the
// low four bits, bytes the whole value. Writes no further than the last pixel's byte.
void PackRow(uint8_t* row, const uint8_t* pixels, int width, int bitCount);

// The reverse: `width` pixel values from a bitmap row.
void UnpackRow(uint8_t* pixels, const uint8_t* row, int width, int bitCount);
