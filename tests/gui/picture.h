// Pixels to compare: what a device context shows, and what a test expects.
#pragma once

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "imaging/palette.h"
#include "windows/drawing/gdi_guards.h"

inline COLORREF ColourRef(RgbTriple colour) {
    return RGB(colour.red, colour.green, colour.blue);
}

struct Picture {
    Picture(int width_, int height_, COLORREF fill = 0)
        : width(width_), height(height_), pixels(static_cast<size_t>(width_ * height_), fill) {}
    COLORREF& At(int x, int y) { return pixels[static_cast<size_t>(y * width + x)]; }
    COLORREF At(int x, int y) const { return pixels[static_cast<size_t>(y * width + x)]; }

    // Draws the image at (left, top) pixel by pixel, in the colours of `palette`, but for the pixels that equal
    // `transparent`. Of a low interlaced image a row is missing.
    void Put(const MemoryHandle& image, int left, int top, const RgbTriple* palette, uint32_t transparent,
             bool interlaced) {
        ImageLock bitmap(image);
        // Each pass of a reveal begins with its first row, whether the image has it or not.
        const int missing = !interlaced || bitmap->height > 4 ? -1 : bitmap->height == 4 ? 3 : 1;
        for (int y = std::max(top, 0); y < std::min(top + bitmap->height, height); ++y)
            for (int x = std::max(left, 0); x < std::min(left + bitmap->width, width); ++x) {
                const uint32_t pixel = GetImagePixel(bitmap, x - left, y - top);
                if (y - top == missing || pixel == transparent) continue;
                At(x, y) = bitmap->bitCount == 24 ? pixel : ColourRef(palette[pixel]);
            }
    }

    int width, height;
    std::vector<COLORREF> pixels;
};

// Empty when both are equal, otherwise the first pixel that differs.
inline std::string Difference(const Picture& expected, const Picture& shown) {
    if (expected.width != shown.width || expected.height != shown.height) return "sizes differ";
    char text[100] = "";
    for (int y = expected.height; y-- > 0;)
        for (int x = expected.width; x-- > 0;)
            if (expected.At(x, y) != shown.At(x, y))
                snprintf(text, sizeof text, "(%d, %d) should be %06lX and is %06lX", x, y, expected.At(x, y),
                         shown.At(x, y));
    return text;
}

// A memory device context with true colours. Not called like the class of the program that is linked beside it.
class DrawnCanvas {
public:
    DrawnCanvas(int width, int height, COLORREF fill) : width_(width), height_(height) {
        std::fill_n(static_cast<uint32_t*>(pixels_), width * height, Swapped(fill));
    }
    HDC Dc() const { return dc_.Get(); }
    Picture Look() const {
        GdiFlush();
        Picture picture(width_, height_);
        auto* pixels = static_cast<const uint32_t*>(pixels_);
        std::transform(pixels, pixels + width_ * height_, picture.pixels.begin(), Swapped);
        return picture;
    }

private:
    // Red and blue lie the other way round in a COLORREF.
    static COLORREF Swapped(uint32_t pixel) { return RGB(pixel >> 16, pixel >> 8, pixel); }
    HBITMAP MakePixels() {
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof info.bmiHeader, width_, -height_, 1, 32, BI_RGB, 0, 0, 0, 0, 0};  // rows from the top
        return CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels_, nullptr, 0);
    }

    int width_, height_;
    void* pixels_ = nullptr;
    MemoryDc dc_{nullptr};
    OwnedGdiObject bitmap_{MakePixels()};
    SelectedObject selected_{dc_.Get(), bitmap_.Get()};
};

using Canvas = DrawnCanvas;

// What `dc` shows from (0, 0) on.
inline Picture Look(HDC dc, int width, int height) {
    Canvas canvas(width, height, 0);
    BitBlt(canvas.Dc(), 0, 0, width, height, dc, 0, 0, SRCCOPY);
    return canvas.Look();
}

// A bitmap with the pixels that `pixelAt` gives. Its colour table is `colours`, or black.
inline MemoryHandle MakeImage(int width, int height, int depth, const RgbTriple* colours,
                              const std::function<uint32_t(int x, int y)>& pixelAt) {
    MemoryHandle image = CreateImageBitmap(width, height, colours, depth);
    ImageWriteLock bitmap(&image);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) SetImagePixel(bitmap, x, y, pixelAt(x, y));
    return image;
}

// 256 colours that all differ.
inline Palette ManyColours(int seed) {
    RgbTriples colours;
    for (int i = 0; i < kPaletteEntries; ++i)
        colours[i] = {static_cast<uint8_t>(i * 53 + seed * 31), static_cast<uint8_t>(i * 29 + seed * 17),
                      static_cast<uint8_t>(200 - i * 7 + seed)};
    Palette palette;
    (void)palette.Set(colours);
    return palette;
}
