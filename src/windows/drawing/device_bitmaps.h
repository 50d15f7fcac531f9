// Images on device contexts, and device bitmaps.
#pragma once

#include "imaging/image_bitmap.h"
#include "platform/windows_api.h"

// Draws the whole image with its own colours at (x, y), combined with what is there by the raster operation.
// Nothing happens on failure, nor for an image without pixels.
void DrawImageBitmap(HDC dc, int x, int y, const MemoryHandle& image, DWORD rasterOperation);

// The same for a bitmap of the program's resources, as LoadResource returns it.
void DrawResourceBitmap(HDC dc, int x, int y, HGLOBAL resource, DWORD rasterOperation);

// Copies the device bitmap to (x, y). False only when there is none; a failure to draw it is silent.
bool DrawDeviceBitmap(HDC dc, int x, int y, HBITMAP bitmap);

// A copy of what `dc` shows in `area` (logical coordinates), cut to its device's resolution. The caller owns it; null
// for an empty area and on failure.
[[nodiscard]] HBITMAP GrabScreenArea(HDC dc, const RECT& area);

// A new image with the pixels of the device bitmap, which must not be selected anywhere, and `palette` as its colour
// table (a full one; null: as the device has it). More than 8 bits per pixel become 24. The caller owns the handle;
// null on failure.
[[nodiscard]] MemoryHandle ImageFromDeviceBitmap(HDC dc, HBITMAP bitmap, const RgbTriple* palette);

// Bits per pixel of the screen: up to 8, or 24 for all above.
int DisplayColourDepth();

// A device bitmap with the pixels and colours of the image, in the format of `dc` (of a new memory context:
// monochrome). The caller owns it; null on failure and for an image without pixels.
[[nodiscard]] HBITMAP MakeDeviceBitmap(HDC dc, ConstLockedBitmap bitmap);

// The image's header and colour table as GDI takes them.
const BITMAPINFO* InfoOf(ConstLockedBitmap bitmap);
