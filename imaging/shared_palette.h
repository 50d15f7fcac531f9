// One palette for all the images of a document.
#pragma once

#include "gif/block_list.h"

constexpr int kSharedPaletteDone = 0;
constexpr int kSharedPaletteNoMemory = 6;

// Makes a palette of at most `*wanted` colours (1 to 256; more counts as 256) from the pixels of every image of `list`.
// When the images have no more colours than that, it is exactly their colours, in the order in which the stored rows
// (the bottom row of each image first) show them; otherwise the result of a median cut (imaging/median_cut.h).
// The images are meant to have 24 bits a pixel. Any other counts with the colours that ExpandToTrueColour would give
// it, so that expanding the images first makes no difference.
// `palette` has 256 entries; unused ones become black. `*wanted` receives the number of colours made.
// Returns kSharedPaletteDone or, with `palette` all black and `*wanted` unchanged, kSharedPaletteNoMemory.
[[nodiscard]] int BuildSharedPalette(int* wanted, RgbTriple* palette, const BlockList& list);
