// What screen readers are told of colours, and of the colour picker's grid.
#pragma once

#include <string>

#include "imaging/image_bitmap.h"
#include "platform/windows_api.h"

// "colour 3, red 0, green 51, blue 102".
std::wstring DescribeColour(unsigned index, RgbTriple colour);

// Has `window` show readers the cells that can be chosen: the colour picker's dialog, which works on a ColourRequest,
// or a control in it. The grid, 16 columns as wide as the window, begins at its upper left corner.
void TellReadersOfGrid(HWND window);
