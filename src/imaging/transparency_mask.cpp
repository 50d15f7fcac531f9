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
    MemoryHandle mask = CreateImageBitmap(bitmap->width, bitmap->height, blackAndWhite, depth);
    std::unique_ptr<uint8_t[]> marks = AllocateScratch(static_cast<uint32_t>(bitmap->width));
    ImageWriteLock to(&mask);
    if (!to || !marks) return nullptr;
    for (int y = 0; y < bitmap->height; ++y) {
        MarkOpaque(ImageRow(bitmap, y), bitmap->width, bitmap->bitCount, transparentIndex, marks.get());
        PackRow(ImageRow(to, y), marks.get(), bitmap->width, 1);
    }
    return mask;
}
