// Finding one colour in a palette.
#pragma once

#include "imaging/image_bitmap.h"

// Index of the entry among the first `count` with the smallest sum of squared channel differences, the lowest index
// among equals; 0 when `count` is 0 or less.
int NearestColour(int red, int green, int blue, const RgbTriple* palette, int count);

// Index of the first of the 1 << depth entries that is exactly this colour, or -1.
int ExactColour(int red, int green, int blue, const RgbTriple* palette, int depth);
