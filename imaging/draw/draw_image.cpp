#include "imaging/draw/draw_image.h"

#include "imaging/draw/device_bitmaps.h"
#include "imaging/draw/drawing_colours.h"
#include "imaging/draw/screen_palette.h"

void AdoptColours(LockedBitmap bitmap, const RgbTriple* palette, RgbTriple* colours) {
    if (palette) SetImagePalette(bitmap, palette);
    GetImagePalette(bitmap, colours);
}

void DrawImageStraight(HDC dc, MemoryHandle image, const RgbTriple* palette, int xSource, int ySource) {
    MemoryLock lock(image);
    if (!lock) return;
    auto* bitmap = lock.As<BitmapHeader>();
    RgbTriples colours;
    AdoptColours(bitmap, palette, colours);
    if (bitmap->width <= 0 || bitmap->height <= 0) return;
    RealizedPalette realized(dc, colours, bitmap->bitCount);
    SetDIBitsToDevice(dc, 0, 0, static_cast<DWORD>(bitmap->width), static_cast<DWORD>(bitmap->height), xSource,
                      -ySource, 0, static_cast<UINT>(bitmap->height), ImagePixels(bitmap), InfoOf(bitmap),
                      DIB_RGB_COLORS);
}
