#include "imaging/transparency_mask.h"

#include "imaging/colour_index.h"
#include "imaging/row_packer.h"
#include "imaging/standard_palette.h"

namespace {

// Turns a row into one byte a pixel: 0 where it equals `transparent`, otherwise 1.
void MarkOpaque(const uint8_t* row, int width, int bitCount, uint32_t transparent, uint8_t* marks) {
    if (bitCount == 24) {
        for (int x = 0; x < width; ++x, row += 3) marks[x] = PackColour(row[2], row[1], row[0]) != transparent;
    } else {
        UnpackRow(marks, row, width, bitCount);
        for (int x = 0; x < width; ++x) marks[x] = marks[x] != transparent;
    }
}

}  // namespace

MemoryHandle MakeTransparencyMask(ConstLockedBitmap bitmap, uint32_t transparentIndex) {
    RgbTriples blackAndWhite;
    int depth = 0;
    StandardPalette(blackAndWhite, &depth, kPaletteBlackWhite);
    OwnedMemory mask(CreateImageBitmap(bitmap->width, bitmap->height, blackAndWhite, depth));
    OwnedMemory marks(AllocateMemory(static_cast<uint32_t>(bitmap->width)));
    MemoryLock lock(mask.Get()), marksLock(marks.Get());
    if (!lock || !marksLock) return nullptr;
    for (int y = 0; y < bitmap->height; ++y) {
        MarkOpaque(ImageRow(bitmap, y), bitmap->width, bitmap->bitCount, transparentIndex, marksLock.Bytes());
        PackRow(ImageRow(lock.As<BitmapHeader>(), y), marksLock.Bytes(), bitmap->width, 1);
    }
    return mask.Release();
}
