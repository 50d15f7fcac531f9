#include "gif/interlace.h"
#include "imaging/draw/device_bitmaps.h"
#include "imaging/draw/draw_image.h"
#include "imaging/draw/drawing_colours.h"
#include "imaging/draw/progressive_reveal.h"
#include "imaging/draw/screen_palette.h"

namespace {

// Draws the one row that comes to (0, row), if the image has it.
void DrawRow(HDC dc, ConstLockedBitmap bitmap, int row, int xSource, int ySource) {
    int fromBottom = bitmap->height - row - ySource - 1;
    if (row >= bitmap->height || fromBottom < 0 || fromBottom >= bitmap->height) return;
    SetDIBitsToDevice(dc, 0, row, static_cast<DWORD>(bitmap->width), 1, xSource, fromBottom, 0,
                      static_cast<UINT>(bitmap->height), ImagePixels(bitmap), InfoOf(bitmap), DIB_RGB_COLORS);
}

// Locks the image for one row only, as it may be released during the wait between two.
bool DrawRowOf(HDC dc, MemoryHandle image, const BitmapHeader& expected, int row, int xSource, int ySource) {
    MemoryLock lock(image);
    if (!lock) return false;
    const auto* bitmap = lock.As<const BitmapHeader>();
    bool same =
        bitmap->width == expected.width && bitmap->height == expected.height && bitmap->bitCount == expected.bitCount;
    if (same) DrawRow(dc, bitmap, row, xSource, ySource);
    return same;
}

bool BeginDrawing(MemoryHandle image, const RgbTriple* palette, BitmapHeader* header, RgbTriple* colours) {
    MemoryLock lock(image);
    if (!lock) return false;
    AdoptColours(lock.As<BitmapHeader>(), palette, colours);
    *header = *lock.As<BitmapHeader>();
    return true;
}

}  // namespace

void DrawImageProgressive(HDC dc, MemoryHandle image, const RgbTriple* palette, int xSource, int ySource) {
    BitmapHeader header;
    RgbTriples colours;
    if (!BeginDrawing(image, palette, &header, colours)) return;
    if (header.width <= 0) return;
    RealizedPalette realized(dc, colours, header.bitCount);
    RowWalk order(header.height, true);
    RevealPace pace(dc);
    for (int turn = 0; turn < header.height; ++turn) {
        if (!DrawRowOf(dc, image, header, order.Row(), xSource, ySource)) return;
        pace.WaitForNextRow();
        order.Advance();
    }
}
