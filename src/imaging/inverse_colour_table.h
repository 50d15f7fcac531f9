// The nearest palette colour for every colour of 5 bits a channel.
#pragma once

#include "imaging/image_bitmap.h"
#include "imaging/stop.h"

constexpr uint32_t kColourCells = 32768;

// All entries are searched even where a smaller palette does not have them: a dark colour may find an unused black one,
// of which the low bits are stored.
constexpr int kQuirkSearchedEntries = kPaletteEntries;

// The cell that a colour is looked up in. Cell c stands for the colour whose channels are its 5-bit groups times 8,
// red in the low bits.
constexpr uint32_t InverseCell(uint32_t red, uint32_t green, uint32_t blue) {
    return red >> 3 | (green >> 3) << 5 | (blue >> 3) << 10;
}

// 32 KB: belongs into the frame of a conversion, not of anything that calls itself.
struct InverseColourTable {
    uint8_t cells[kColourCells];

    // Fills every cell with NearestColour of its colour among the first kQuirkSearchedEntries of `palette`.
    void Fill(const RgbTriple* palette);

    // The same, with `stop` (or null) asked once for every cell. False when it said yes: the cells are then undefined.
    [[nodiscard]] bool Build(const RgbTriple* palette, StopQuestion* stop);
};
