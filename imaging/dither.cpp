#include "imaging/dither.h"

#include "imaging/dither_colours.h"
#include "imaging/dither_two_colours.h"

DitherSettings ditherSettings;

MemoryHandle DitherImage(MemoryHandle source, const RgbTriple* palette, int depth, unsigned flags) {
    abortStatus = 0;
    MemoryLock lock(source);
    if (!lock || depth < 1 || depth > 8) return nullptr;
    const auto* from = lock.As<const BitmapHeader>();
    if (from->bitCount == 1) return nullptr;
    return depth == 1 ? DitherToTwoColours(from, palette, flags, ditherSettings)
                      : DitherToColours(from, palette, depth, flags);
}
