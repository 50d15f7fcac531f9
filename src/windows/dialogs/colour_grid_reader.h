// What screen readers are told of colours, and of the colour picker's grid.
#pragma once

#include <string>

#include "imaging/image_bitmap.h"
#include "platform/windows_api.h"

// "colour 3, red 0, green 51, blue 102".
std::wstring DescribeColour(unsigned index, RgbTriple colour);

// Has the colour picker's dialog, which works on a ColourRequest, show its cells to readers: those that can be chosen.
void TellReadersOfGrid(HWND dialog);
