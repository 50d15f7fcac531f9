#include "imaging/true_colour.h"

#include "imaging/pixel_rows.h"

MemoryHandle ExpandToTrueColour(MemoryHandle source) {
    MemoryLock lock(source);
    if (!lock) return nullptr;
    const auto* from = lock.As<const BitmapHeader>();
    OwnedMemory result(CreateImageBitmap(from->width, from->height, nullptr, 24));
    MemoryLock resultLock(result.Get());
    if (!resultLock) return nullptr;
    auto* to = resultLock.As<BitmapHeader>();

    const TrueColours colours = GetTrueColours(from);
    for (int y = 0; y < from->height; ++y)
        ExpandRow(ImageRow(from, y), from->width, from->bitCount, colours, ImageRow(to, y));
    return result.Release();
}
