// The order of a palette's colours, and the depth that holds them.
#pragma once

#include "imaging/image_bitmap.h"

// Sorts the first `count` entries (at most 256) by luminance: brightest first, or darkest first with `darkestFirst`.
// Colours of the same luminance keep their order.
void SortPaletteByBrightness(RgbTriple* palette, int count, bool darkestFirst);

// The least depth, 1 to 8, with room for `count` colours; 8 for more than 256.
int DepthForColourCount(int count);
