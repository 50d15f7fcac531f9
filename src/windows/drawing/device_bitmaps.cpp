#include "windows/drawing/device_bitmaps.h"

#include <algorithm>

#include "windows/drawing/gdi_guards.h"
#include "windows/drawing/screen_palette.h"

namespace {

constexpr int kTrueColourBits = 24;

void DrawLocked(HDC dc, int x, int y, ConstLockedBitmap bitmap, DWORD rasterOperation) {
    RgbTriples palette;
    if (!GetImagePalette(bitmap, palette)) return;
    RealizedPalette realized(dc, palette, bitmap->bitCount);
    OwnedGdiObject pixels(MakeDeviceBitmap(dc, bitmap));
    MemoryDc memory(dc);
    if (!pixels.Get() || !memory.Get()) return;
    SelectedObject selected(memory.Get(), pixels.Get());
    BitBlt(dc, x, y, bitmap->width, bitmap->height, memory.Get(), 0, 0, rasterOperation);
}

int WithoutOddDepths(int bits) {
    return bits > 8 ? kTrueColourBits : bits;
}

bool ReadPixels(HDC dc, HBITMAP bitmap, int height, MemoryHandle* image, const RgbTriple* palette) {
    ImageWriteLock lock(image);
    if (!lock) return false;
    LockedBitmap target = lock;
    const BitmapHeader header = *target;
    auto* info = reinterpret_cast<BITMAPINFO*>(target);
    auto rows = static_cast<UINT>(height);
    if (GetDIBits(dc, bitmap, 0, rows, ImagePixels(target), info, DIB_RGB_COLORS) != height) return false;
    // The system has put its own counts and the device's colours in the place of ours.
    *target = header;
    if (palette) SetImagePalette(target, palette);
    return true;
}

}  // namespace

const BITMAPINFO* InfoOf(ConstLockedBitmap bitmap) {
    return reinterpret_cast<const BITMAPINFO*>(bitmap);
}

HBITMAP MakeDeviceBitmap(HDC dc, ConstLockedBitmap bitmap) {
    if (bitmap->width <= 0 || bitmap->height <= 0) return nullptr;
    const BITMAPINFO* info = InfoOf(bitmap);
    return CreateDIBitmap(dc, &info->bmiHeader, CBM_INIT, ImagePixels(bitmap), info, DIB_RGB_COLORS);
}

void DrawImageBitmap(HDC dc, int x, int y, const MemoryHandle& image, DWORD rasterOperation) {
    ImageLock bitmap(image);
    if (bitmap) DrawLocked(dc, x, y, bitmap, rasterOperation);
}

void DrawResourceBitmap(HDC dc, int x, int y, HGLOBAL resource, DWORD rasterOperation) {
    const auto* bitmap = static_cast<const BitmapHeader*>(resource ? LockResource(resource) : nullptr);
    if (bitmap) DrawLocked(dc, x, y, bitmap, rasterOperation);
}

bool DrawDeviceBitmap(HDC dc, int x, int y, HBITMAP bitmap) {
    if (!bitmap) return false;
    MemoryDc memory(dc);
    BITMAP size;
    if (!memory.Get() || !GetObjectW(bitmap, sizeof(size), &size)) return true;
    SelectedObject selected(memory.Get(), bitmap);
    BitBlt(dc, x, y, size.bmWidth, size.bmHeight, memory.Get(), 0, 0, SRCCOPY);
    return true;
}

HBITMAP GrabScreenArea(HDC dc, const RECT& area) {
    if (IsRectEmpty(&area)) return nullptr;
    LONG left = std::max(area.left, LONG{0});
    LONG top = std::max(area.top, LONG{0});
    LONG width = std::min(area.right, LONG{GetDeviceCaps(dc, HORZRES)}) - left;
    LONG height = std::min(area.bottom, LONG{GetDeviceCaps(dc, VERTRES)}) - top;
    if (width <= 0 || height <= 0) return nullptr;

    MemoryDc memory(dc);
    HBITMAP grabbed = memory.Get() ? CreateCompatibleBitmap(dc, width, height) : nullptr;
    if (!grabbed) return nullptr;
    SelectedObject selected(memory.Get(), grabbed);
    BitBlt(memory.Get(), 0, 0, width, height, dc, left, top, SRCCOPY);
    return grabbed;
}

MemoryHandle ImageFromDeviceBitmap(HDC dc, HBITMAP bitmap, const RgbTriple* palette) {
    BITMAP size;
    if (!bitmap || !GetObjectW(bitmap, sizeof(size), &size)) return nullptr;
    int depth = WithoutOddDepths(size.bmPlanes * size.bmBitsPixel);
    MemoryHandle image = CreateImageBitmap(size.bmWidth, size.bmHeight, palette, depth);
    if (!ReadPixels(dc, bitmap, size.bmHeight, &image, palette)) return nullptr;
    return image;
}

int DisplayColourDepth() {
    WindowDc screen(nullptr);
    return WithoutOddDepths(GetDeviceCaps(screen.Get(), PLANES) * GetDeviceCaps(screen.Get(), BITSPIXEL));
}
