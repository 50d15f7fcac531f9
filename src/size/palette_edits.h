// Smaller colour tables for pictures that stay the same.
#pragma once

#include <array>

#include "gif/block_list.h"

// Which indexes the pixels of an image have, and how many lowest ones a table needs to hold them all.
struct UsedIndexes {
    std::array<bool, kPaletteEntries> of = {};
    int end = 0;  // the highest used one plus 1; 0 without pixels
};

// False when the image's bitmap can't be locked, or has no indexes.
[[nodiscard]] bool FindUsedIndexes(const Block& image, UsedIndexes* used);

// Gives a HEADER or an IMAGE that has one a colour table of `colours` entries, a power of two from 2 to 256; new ones
// are black. A HEADER may also have none, 0, and get one. The codes of an image stay as its file has them. False, with
// the block unchanged, when memory runs out.
[[nodiscard]] bool ResizeColourTable(Block* block, int colours);

enum class SharedTable : uint8_t {
    kDone,          // the image has no table of its own any more
    kHadNone,       // nor had it one before; nothing was changed
    kLacksColours,  // the document's has not all colours of the picture, or there is none; nothing was changed
    kNoPicture,     // that can be looked at; nothing was changed
    kNoMemory,      // nothing was changed
};

// Lets the IMAGE use the document's colour table instead of its own, where the picture stays as it is. Pixels get other
// indexes, but for those of `transparentIndex` (-1: none), only when they have to; without that the codes stay as the
// file has them.
SharedTable UseGlobalTable(const GlobalPalette& global, int transparentIndex, Block* image);
