#include "windows/drawing/draw_image.h"

#include <algorithm>

#include "windows/drawing/device_bitmaps.h"
#include "windows/drawing/enlargement.h"
#include "windows/drawing/screen_palette.h"

namespace {

// The colours that an image is drawn in stay in its bitmap.
constexpr bool kQuirkDrawingRecolours = true;

bool HasColours(ConstLockedBitmap bitmap, const RgbTriple* palette) {
    if (!bitmap) return false;
    RgbTriples own;
    const int count = bitmap->bitCount > 8 ? 0 : GetImagePalette(bitmap, own);
    return std::equal(own, own + count, palette);
}

}  // namespace

bool AdoptColours(MemoryHandle* image, const RgbTriple* palette) {
    if (!kQuirkDrawingRecolours || !palette || HasColours(ImageLock(*image), palette)) return true;
    ImageWriteLock bitmap(image);
    if (bitmap) SetImagePalette(bitmap, palette);
    return bitmap;
}

void DrawImageStraight(HDC dc, MemoryHandle* image, const RgbTriple* palette, int xSource, int ySource) {
    if (!*image || !AdoptColours(image, palette)) return;
    ImageLock bitmap(*image);
    if (!bitmap || bitmap->width <= 0 || bitmap->height <= 0) return;
    RgbTriples colours;
    GetImagePalette(bitmap, colours);
    RealizedPalette realized(dc, colours, bitmap->bitCount);
    if (IsEnlarged(dc))
        return PutEnlargedRows(dc, -xSource, -ySource, InfoOf(bitmap), ImagePixels(bitmap), 0, bitmap->height);
    SetDIBitsToDevice(dc, 0, 0, static_cast<DWORD>(bitmap->width), static_cast<DWORD>(bitmap->height), xSource,
                      -ySource, 0, static_cast<UINT>(bitmap->height), ImagePixels(bitmap), InfoOf(bitmap),
                      DIB_RGB_COLORS);
}
