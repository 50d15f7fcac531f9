// Giving an image another palette, the error of each pixel spread over its neighbours.
#pragma once

#include "imaging/image_bitmap.h"
#include "imaging/stop.h"
#include "platform/result.h"

// How dithering to two colours stretches the scale of greys. Values out of range count as the nearest end.
struct DitherSettings {
    int brightness = 20;  // 0 to 255; the darkest level is brightness - contrast
    int contrast = 20;    // 0 to 127; a step of grey is one of 256 / (256 - 2 * contrast) levels
};
extern DitherSettings ditherSettings;  // the shell may change it at start

// As RemapImage (imaging/remap.h), with Floyd-Steinberg error diffusion, for sources of 4, 8 or 24 bits.
// A depth of 1 gives a black and white picture that only uses the indexes of `palette`, not its colours.
// Fails with kNoMemory also for a 1-bit source, which has nothing to dither.
Result<MemoryHandle> DitherImage(const MemoryHandle& source, const RgbTriple* palette, int depth,
                                 StopQuestion* stop = nullptr);
