#include "tests/gui/picture.h"

#include <algorithm>
#include <cstdio>

namespace {

HBITMAP MakePixels(int width, int height, void** pixels) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};  // rows from the top
    return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, pixels, nullptr, 0);
}

// Red and blue lie the other way round in a COLORREF.
COLORREF Swapped(uint32_t pixel) {
    return RGB(pixel >> 16, pixel >> 8, pixel);
}

}  // namespace

void Picture::Put(MemoryHandle image, int left, int top, const RgbTriple* palette, uint32_t transparent,
                  bool interlaced) {
    MemoryLock lock(image);
    auto* bitmap = lock.As<const BitmapHeader>();
    // Each pass of a reveal begins with its first row, whether the image has it or not.
    const int missing = !interlaced || bitmap->height > 4 ? -1 : bitmap->height == 4 ? 3 : 1;
    for (int y = 0; y < bitmap->height; ++y)
        for (int x = 0; x < bitmap->width; ++x) {
            uint32_t pixel = GetImagePixel(bitmap, x, y);
            if (y == missing || pixel == transparent || !Has(left + x, top + y)) continue;
            At(left + x, top + y) = bitmap->bitCount == 24 ? pixel : ColourRef(palette[pixel]);
        }
}

std::string Difference(const Picture& expected, const Picture& shown) {
    if (expected.width != shown.width || expected.height != shown.height) return "sizes differ";
    char text[100] = "";
    for (int y = expected.height; y-- > 0;)
        for (int x = expected.width; x-- > 0;)
            if (expected.At(x, y) != shown.At(x, y))
                snprintf(text, sizeof text, "(%d, %d) should be %06lX and is %06lX", x, y, expected.At(x, y),
                         shown.At(x, y));
    return text;
}

Picture Look(HDC dc, int width, int height) {
    Canvas canvas(width, height, 0);
    BitBlt(canvas.Dc(), 0, 0, width, height, dc, 0, 0, SRCCOPY);
    return canvas.Look();
}

Canvas::Canvas(int width, int height, COLORREF fill)
    : width_(width),
      height_(height),
      bitmap_(MakePixels(width, height, &pixels_)),
      selected_(dc_.Get(), bitmap_.Get()) {
    std::fill_n(static_cast<uint32_t*>(pixels_), width * height, Swapped(fill));
}

Picture Canvas::Look() const {
    GdiFlush();
    Picture picture(width_, height_);
    auto* pixels = static_cast<const uint32_t*>(pixels_);
    std::transform(pixels, pixels + width_ * height_, picture.pixels.begin(), Swapped);
    return picture;
}

MemoryHandle MakeImage(int width, int height, int depth, const RgbTriple* colours, const PixelAt& pixelAt) {
    MemoryHandle image = CreateImageBitmap(width, height, colours, depth);
    MemoryLock lock(image);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) SetImagePixel(lock.As<BitmapHeader>(), x, y, pixelAt(x, y));
    return image;
}

void FillColours(RgbTriple* palette, int seed) {
    for (int i = 0; i < kPaletteEntries; ++i)
        palette[i] = {static_cast<uint8_t>(i * 53 + seed * 31), static_cast<uint8_t>(i * 29 + seed * 17),
                      static_cast<uint8_t>(200 - i * 7 + seed)};
}
