// Conversions that are still to come: they give no result.
#include "imaging/dither.h"
#include "imaging/remap.h"

MemoryHandle RemapImage(MemoryHandle, const RgbTriple*, int, unsigned) {
    return nullptr;
}

MemoryHandle DitherImage(MemoryHandle, const RgbTriple*, int, unsigned) {
    return nullptr;
}
