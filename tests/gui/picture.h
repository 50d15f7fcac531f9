// Pixels to compare: what a device context shows, and what a test expects.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "app/services/settings.h"
#include "imaging/image_bitmap.h"
#include "platform/windows_api.h"

struct Picture {
    Picture(int width_, int height_, COLORREF fill = 0)
        : width(width_), height(height_), pixels(static_cast<size_t>(width_ * height_), fill) {}
    bool Has(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
    COLORREF& At(int x, int y) { return pixels[static_cast<size_t>(y * width + x)]; }
    COLORREF At(int x, int y) const { return pixels[static_cast<size_t>(y * width + x)]; }
    // Draws the image at (left, top) pixel by pixel, in the colours of `palette`, but for the pixels that equal
    // `transparent`. Of a low interlaced image a row is missing.
    void Put(MemoryHandle image, int left, int top, const RgbTriple* palette, uint32_t transparent, bool interlaced);

    int width, height;
    std::vector<COLORREF> pixels;
};

// Empty when both are equal, otherwise how many pixels differ and the first of them.
std::string Difference(const Picture& expected, const Picture& shown);

// What `dc` shows from (0, 0) on.
Picture Look(HDC dc, int width, int height);

// A memory device context with true colours.
class Canvas {
public:
    Canvas(int width, int height, COLORREF fill);
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    HDC Dc() const { return dc_; }
    Picture Look() const { return ::Look(dc_, width_, height_); }

private:
    int width_, height_;
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ previous_;
};

// While it exists, the rows of interlaced images need no time to appear.
class InstantReveal {
public:
    InstantReveal() : before_(settings.interlaceDelay) { settings.interlaceDelay = 0; }
    ~InstantReveal() { settings.interlaceDelay = before_; }
    InstantReveal(const InstantReveal&) = delete;
    InstantReveal& operator=(const InstantReveal&) = delete;

private:
    uint32_t before_;
};

using PixelAt = std::function<uint32_t(int x, int y)>;

// A bitmap with the pixels that `pixelAt` gives. Its colour table is `colours`, or black.
MemoryHandle MakeImage(int width, int height, int depth, const RgbTriple* colours, const PixelAt& pixelAt);

inline COLORREF ColourRef(RgbTriple colour) {
    return RGB(colour.red, colour.green, colour.blue);
}
