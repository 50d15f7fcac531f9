// The colours with which an image is drawn.
#pragma once

#include "imaging/image_bitmap.h"

// Fills `colours` (256 entries) with the image's colours: those of `palette`, which become the bitmap's own, or, when
// it is null, those that the bitmap has. A 24-bit bitmap has none, and nothing happens.
void AdoptColours(LockedBitmap bitmap, const RgbTriple* palette, RgbTriple* colours);
