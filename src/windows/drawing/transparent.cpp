#include "gif/interlace.h"
#include "imaging/transparency_mask.h"
#include "windows/drawing/device_bitmaps.h"
#include "windows/drawing/draw_image.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/drawing/progressive_reveal.h"

namespace {

// The image with its transparent pixels black, and where it is transparent: what two raster operations need to draw it.
class CutOut {
public:
    CutOut(HDC dc, int width, int height, HBITMAP image, HBITMAP mask);
    bool IsReady() const { return ready_; }

    // Draws `rows` rows at (0, y): blackens the opaque places, then adds the image's colours to them.
    void Draw(HDC dc, int y, int rows, int xSource, int ySource) const {
        BitBlt(dc, 0, y, width_, rows, holes_.Get(), xSource, ySource, SRCAND);
        BitBlt(dc, 0, y, width_, rows, image_.Get(), xSource, ySource, SRCINVERT);
    }

private:
    void Prepare(HDC mask, int height);

    int width_;
    MemoryDc image_, holes_;
    OwnedGdiObject holesBitmap_;
    SelectedObject imageSelected_, holesSelected_;
    bool ready_ = false;
};

CutOut::CutOut(HDC dc, int width, int height, HBITMAP image, HBITMAP mask)
    : width_(width),
      image_(dc),
      holes_(dc),
      holesBitmap_(CreateBitmap(width, height, 1, 1, nullptr)),
      imageSelected_(image_.Get(), image),
      holesSelected_(holes_.Get(), holesBitmap_.Get()) {
    MemoryDc opaque(dc);
    SelectedObject opaqueSelected(opaque.Get(), mask);
    ready_ = imageSelected_ && holesSelected_ && opaqueSelected;
    if (ready_) Prepare(opaque.Get(), height);
}

void CutOut::Prepare(HDC mask, int height) {
    BitBlt(holes_.Get(), 0, 0, width_, height, mask, 0, 0, NOTSRCCOPY);
    BitBlt(image_.Get(), 0, 0, width_, height, mask, 0, 0, SRCAND);
}

HBITMAP MakeMaskBitmap(HDC dc, ConstLockedBitmap bitmap, uint32_t transparentIndex) {
    const MemoryHandle made = MakeTransparencyMask(bitmap, transparentIndex);
    ImageLock mask(made);
    MemoryDc memory(dc);  // as it comes, with a monochrome bitmap: so becomes the mask's
    return mask && memory.Get() ? MakeDeviceBitmap(memory.Get(), mask) : nullptr;
}

void RevealCutOut(HDC dc, const CutOut& cutOut, int height, int xSource, int ySource) {
    RowWalk order(height, true);
    RevealPace pace(dc);
    for (int turn = 0; turn < height; ++turn) {
        if (order.Row() < height) cutOut.Draw(dc, order.Row(), 1, xSource, order.Row() - ySource);
        pace.WaitForNextRow();
        order.Advance();
    }
}

struct Size {
    int width, height;
};

bool MakeDeviceBitmaps(HDC dc, const MemoryHandle& image, uint32_t transparentIndex, Size* size, HBITMAP* pixels,
                       HBITMAP* mask) {
    ImageLock bitmap(image);
    if (!bitmap) return false;
    *size = {bitmap->width, bitmap->height};
    if (size->width <= 0 || size->height <= 0) return true;
    *pixels = MakeDeviceBitmap(dc, bitmap);
    *mask = *pixels ? MakeMaskBitmap(dc, bitmap, transparentIndex) : nullptr;
    return *mask != nullptr;
}

}  // namespace

bool DrawImageTransparent(HDC dc, const MemoryHandle& image, int xSource, int ySource, uint32_t transparentIndex,
                          bool interlaced) {
    Size size;
    HBITMAP pixels = nullptr, mask = nullptr;
    bool made = MakeDeviceBitmaps(dc, image, transparentIndex, &size, &pixels, &mask);
    OwnedGdiObject ownedPixels(pixels), ownedMask(mask);
    if (!made || !mask) return made;
    CutOut cutOut(dc, size.width, size.height, pixels, mask);
    if (!cutOut.IsReady()) return false;

    // Monochrome bits take on the target's text and background colours.
    SavedDc saved(dc);
    SetTextColor(dc, RGB(0, 0, 0));
    SetBkColor(dc, RGB(255, 255, 255));
    if (interlaced)
        RevealCutOut(dc, cutOut, size.height, xSource, ySource);
    else
        cutOut.Draw(dc, 0, size.height, xSource, -ySource);
    return true;
}
