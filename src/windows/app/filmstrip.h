// The filmstrip: a list box with a cell for every frame, side by side, that holds its picture and its time. Pictures
// are composed as their cells come into sight, while the window waits for messages.
#pragma once

#include "platform/windows_api.h"

class PlayedDocument;

// Creates it as child IDC_FILMSTRIP of `window`, without a place. Null when that fails.
HWND CreateFilmstrip(HWND window);

// Puts it there, with cells as high as it is.
void PlaceFilmstrip(HWND box, const RECT& place);

// Shows the frames of `played`, which must stay where it is as long as the strip is there, and selects the one that
// `line` is a part of.
void ShowInFilmstrip(HWND box, const PlayedDocument& played, int line);

// Paints one cell.
void DrawFilmstripCell(const DRAWITEMSTRUCT& item);

// The frame whose cell is selected; -1 without one.
int SelectedFrame(HWND box);

// Whether all cells in sight have their pictures.
bool IsFilmstripReady(HWND box);

// Gives back what the pictures take. To be called before the strip goes.
void ForgetFilmstrip();
