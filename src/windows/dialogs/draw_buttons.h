// The faces of the colour and eyedropper buttons: answers to WM_DRAWITEM.
#pragma once

#include <cstdint>

#include "imaging/image_bitmap.h"
#include "platform/windows_api.h"

// A face in the colour of entry `index` of `palette` (256 entries), with the button's text on it; grey without a text
// when the button is disabled.
void DrawColourButton(HWND dialog, const DRAWITEMSTRUCT& item, const RgbTriple* palette, uint8_t index);

// A face with one glyph of the bitmap resource `bitmapId`: a row of square glyphs in its upper half (white outside the
// shape), their masks in the lower half (black inside the shape). `glyphIndex` counts from 0 at the left. The next two
// resources are the same bitmap for screens that are half as dense again, and twice as dense.
void DrawBitmapButton(HWND dialog, const DRAWITEMSTRUCT& item, int bitmapId, int glyphIndex);
