// Which colours share the global palette, and in which order.
#pragma once

#include <vector>

#include "size/frame_plan.h"

constexpr size_t kMostColours = 256;

// The colours of a palette by index; kTransparentId where an entry has none.
using PaletteIds = std::vector<ColourId>;

// How many bits count `colours` entries: 1 at least.
int DepthForColours(size_t colours);

// The colours of the global palette: those of as many frames as it has room for, the ones that many small changes need
// first, so that these frames get by with few bits. `wanted` comes in any case. Empty when it has no use.
PaletteIds ChooseGlobalPalette(const FramePlan& plan, const std::vector<ColourId>& wanted);
