// The colours of pictures that show what pixels cost.
#pragma once

#include <array>
#include <cstdint>

#include "imaging/palette.h"

// As pixels of a canvas (animation/paint_image.h). Entry 0 is transparent: it is for pixels that the data does not
// have.
using HeatMapColours = std::array<uint32_t, kPaletteEntries>;
HeatMapColours MakeHeatMapColours();

// The entry for a pixel that costs so many bits; 0 for none.
uint8_t HeatMapEntry(float bits);
