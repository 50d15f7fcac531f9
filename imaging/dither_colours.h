// The error diffusion of DitherImage (imaging/dither.h) for palettes of more than two colours.
#pragma once

#include "imaging/image_bitmap.h"

// `source` has 4, 8 or 24 bits, `depth` is 2 to 8. Otherwise as DitherImage.
[[nodiscard]] MemoryHandle DitherToColours(ConstLockedBitmap source, const RgbTriple* palette, int depth,
                                           unsigned flags);
