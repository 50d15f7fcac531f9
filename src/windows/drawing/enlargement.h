// Pictures in windows on dense screens, where each of their pixels is a square of several of the screen's, so that they
// are as large as on others and not blurred. On usual screens nothing changes.
#pragma once

#include "platform/windows_api.h"

// How many pixels of the screen in a row stand for one of a picture in `window`.
int EnlargementOf(HWND window);

// The size of the client area of `window` in pixels of a picture; what is left of another one does not count.
SIZE EnlargedClient(HWND window);

// Makes `dc`, of `window`, count in pixels of a picture. Its origin stays in the corner.
void Enlarge(HDC dc, HWND window);

// Whether `dc` does.
bool IsEnlarged(HDC dc);

// Draws `rows` whole rows of the bitmap, from the one on that is `fromBottom` above its lowest, to (x, y) of a `dc`
// that does.
void PutEnlargedRows(HDC dc, int x, int y, const BITMAPINFO* info, const void* pixels, int fromBottom, int rows);
