#include "gif/interlace.h"
#include "windows/drawing/device_bitmaps.h"
#include "windows/drawing/draw_image.h"
#include "windows/drawing/enlargement.h"
#include "windows/drawing/progressive_reveal.h"
#include "windows/drawing/screen_palette.h"

namespace {

// Draws the one row that comes to (0, row), if the image has it.
void DrawRow(HDC dc, ConstLockedBitmap bitmap, int row, int xSource, int ySource) {
    int fromBottom = bitmap->height - row - ySource - 1;
    if (row >= bitmap->height || fromBottom < 0 || fromBottom >= bitmap->height) return;
    if (IsEnlarged(dc)) return PutEnlargedRows(dc, -xSource, row, InfoOf(bitmap), ImagePixels(bitmap), fromBottom, 1);
    SetDIBitsToDevice(dc, 0, row, static_cast<DWORD>(bitmap->width), 1, xSource, fromBottom, 0,
                      static_cast<UINT>(bitmap->height), ImagePixels(bitmap), InfoOf(bitmap), DIB_RGB_COLORS);
}

}  // namespace

void DrawImageProgressive(HDC dc, MemoryHandle* image, const RgbTriple* palette, int xSource, int ySource) {
    if (!*image || !AdoptColours(image, palette)) return;
    ImageLock bitmap(*image);  // keeps it, even if the document lets it go during a wait
    if (!bitmap || bitmap->width <= 0) return;
    RgbTriples colours;
    GetImagePalette(bitmap, colours);
    RealizedPalette realized(dc, colours, bitmap->bitCount);
    RowWalk order(bitmap->height, true);
    RevealPace pace(dc);
    for (int turn = 0; turn < bitmap->height; ++turn) {
        DrawRow(dc, bitmap, order.Row(), xSource, ySource);
        pace.WaitForNextRow();
        order.Advance();
    }
}
