// The error diffusion of DitherImage (imaging/dither.h) for black and white.
#pragma once

#include "imaging/dither.h"
#include "imaging/image_bitmap.h"

// `source` has 4, 8 or 24 bits. Otherwise as DitherImage with a depth of 1.
[[nodiscard]] MemoryHandle DitherToTwoColours(ConstLockedBitmap source, const RgbTriple* palette, unsigned flags,
                                              const DitherSettings& settings);
