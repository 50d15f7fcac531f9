#include "tests/gui/picture.h"

#include <cstdio>
#include <cstring>

namespace {

// What the passes of a reveal reach: each begins with its first row, whether the image has it or not.
bool IsRowRevealed(int row, int height) {
    return height > 4 || row != (height == 4 ? 3 : 1);
}

}  // namespace

void Picture::Put(MemoryHandle image, int left, int top, const RgbTriple* palette, uint32_t transparent,
                  bool interlaced) {
    MemoryLock lock(image);
    auto* bitmap = lock.As<const BitmapHeader>();
    for (int y = 0; y < bitmap->height; ++y)
        for (int x = 0; x < bitmap->width; ++x) {
            uint32_t pixel = GetImagePixel(bitmap, x, y);
            if (pixel == transparent || !Has(left + x, top + y)) continue;
            if (interlaced && !IsRowRevealed(y, bitmap->height)) continue;
            At(left + x, top + y) = bitmap->bitCount == 24 ? pixel : ColourRef(palette[pixel]);
        }
}

std::string Difference(const Picture& expected, const Picture& shown) {
    if (expected.width != shown.width || expected.height != shown.height) return "sizes differ";
    int count = 0;
    char first[100] = "";
    for (int y = 0; y < expected.height; ++y)
        for (int x = 0; x < expected.width; ++x)
            if (expected.At(x, y) != shown.At(x, y) && count++ == 0)
                snprintf(first, sizeof first, "(%d, %d) should be %06lX and is %06lX", x, y, expected.At(x, y),
                         shown.At(x, y));
    return count ? std::to_string(count) + " pixels differ: " + first : "";
}

Picture Look(HDC dc, int width, int height) {
    Canvas canvas(width, height, 0);
    BitBlt(canvas.Dc(), 0, 0, width, height, dc, 0, 0, SRCCOPY);
    GdiFlush();
    DIBSECTION section;
    GetObjectW(GetCurrentObject(canvas.Dc(), OBJ_BITMAP), sizeof section, &section);
    auto* pixels = static_cast<const uint32_t*>(section.dsBm.bmBits);
    Picture picture(width, height);
    for (COLORREF& colour : picture.pixels) {
        colour = (*pixels & 0xFF) << 16 | (*pixels & 0xFF00) | (*pixels >> 16 & 0xFF);
        ++pixels;
    }
    return picture;
}

Canvas::Canvas(int width, int height, COLORREF fill)
    : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};  // rows from the top
    bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, nullptr, nullptr, 0);
    previous_ = SelectObject(dc_, bitmap_);
    HBRUSH brush = CreateSolidBrush(fill);
    RECT all = {0, 0, width, height};
    FillRect(dc_, &all, brush);
    DeleteObject(brush);
}

Canvas::~Canvas() {
    SelectObject(dc_, previous_);
    DeleteObject(bitmap_);
    DeleteDC(dc_);
}

MemoryHandle MakeImage(int width, int height, int depth, const RgbTriple* colours, const PixelAt& pixelAt) {
    OwnedMemory image(CreateImageBitmap(width, height, colours, depth));
    MemoryLock lock(image.Get());
    for (int y = 0; lock && y < height; ++y)
        for (int x = 0; x < width; ++x) SetImagePixel(lock.As<BitmapHeader>(), x, y, pixelAt(x, y));
    return image.Release();
}
