#include "imaging/true_colour.h"

#include "imaging/pixel_rows.h"

MemoryHandle ExpandToTrueColour(const MemoryHandle& source) {
    ImageLock from(source);
    if (!from) return nullptr;
    MemoryHandle result = CreateImageBitmap(from->width, from->height, nullptr, 24);
    ImageWriteLock to(&result);
    if (!to) return nullptr;

    const TrueColours colours = GetTrueColours(from);
    for (int y = 0; y < from->height; ++y)
        ExpandRow(ImageRow(from, y), from->width, from->bitCount, colours, ImageRow(to, y));
    return result;
}
