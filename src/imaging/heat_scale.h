// Colours that show how much there is of something.
#pragma once

#include "imaging/image_bitmap.h"

// The colour for `heat`, 0 (dark violet) to 1 (light yellow); values beyond count as the nearest end. Equal steps look
// equal, and more is always lighter.
RgbTriple HeatColour(double heat);
