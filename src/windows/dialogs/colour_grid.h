// The cells of the colour picker, and the control that they are in careful mode: with a mark on the current colour, and
// for the keyboard.
#pragma once

#include "windows/dialogs/select_colour.h"

constexpr int kGridColumns = 16;

// Draws all 256 colours of the request in cells of that size, from (0, 0) on.
void DrawColourCells(HDC dc, const ColourRequest& request, int cell);

// Creates the control IDC_COLOUR_GRID as the first of the dialog, for the colours of the dialog's ColourRequest, with
// the current one marked. The arrow keys, Home and End move the mark. Enter, Space and a click choose: the control
// sends BN_CLICKED, and MarkedColour is the choice. Null when it can't be made.
HWND CreateColourGrid(HWND dialog);

// Makes its cells that large.
void FitColourGrid(HWND grid, int cell);

// Moves the mark to a colour of the request, of which screen readers hear.
void MarkColour(HWND grid, uint32_t index);
uint32_t MarkedColour(HWND grid);
