// The fixed palettes that the program offers.
#pragma once

#include "imaging/image_bitmap.h"

// Kinds of standard palette with a use of their own; others are plain numbers.
enum StandardPaletteKind : int {
    kPaletteBlackWhite = 0,
    kPaletteSixteen = 2,
    kPalette32 = 3,
    kPalette64 = 4,
    kPalette128 = 5,
    kPaletteWeb = 6,       // 216 colours: the 6 x 6 x 6 cube
    kPaletteCube = 7,      // 256 colours: red and green in 8 levels, blue in 4; also every kind without one of its own
    kPaletteCubeGrey = 8,  // 256 colours: a 7 x 8 x 4 cube with 32 greys
    kPaletteGrey = 9,      // 256 greys
};

// Fills `palette` (256 entries, or null for none) with standard palette number `kind`; entries that it does not have
// are black. `depth` (or null) receives its bit depth. Returns its number of colours.
int StandardPalette(RgbTriple* palette, int* depth, int kind);
