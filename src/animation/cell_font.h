// The letters of plain texts where there is no system to draw them: fixed cells, in the measures of the font that View
// uses (the system's fixed ANSI font at its usual size).
#pragma once

#include <cstdint>

constexpr int kCellWidth = 8;
constexpr int kCellHeight = 13;

// Row `y` (0 to kCellHeight - 1) of the cell of a Windows-1252 character: bit 7 is the leftmost pixel. Letters with
// accents come without them, other characters beyond ASCII as a box.
uint8_t CellRow(uint8_t character, int y);
