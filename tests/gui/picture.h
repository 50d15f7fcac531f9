// Pixels to compare: what a device context shows, and what a test expects.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "imaging/draw/gdi_guards.h"
#include "imaging/image_bitmap.h"

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

// Empty when both are equal, otherwise the first pixel that differs.
std::string Difference(const Picture& expected, const Picture& shown);

// What `dc` shows from (0, 0) on.
Picture Look(HDC dc, int width, int height);

// A memory device context with true colours.
class Canvas {
public:
    Canvas(int width, int height, COLORREF fill);
    HDC Dc() const { return dc_.Get(); }
    Picture Look() const;

private:
    int width_, height_;
    void* pixels_ = nullptr;
    MemoryDc dc_{nullptr};
    OwnedGdiObject bitmap_;
    SelectedObject selected_;
};

using PixelAt = std::function<uint32_t(int x, int y)>;

// A bitmap with the pixels that `pixelAt` gives. Its colour table is `colours`, or black.
MemoryHandle MakeImage(int width, int height, int depth, const RgbTriple* colours, const PixelAt& pixelAt);

// Fills all 256 entries with colours that all differ.
void FillColours(RgbTriple* palette, int seed);

inline COLORREF ColourRef(RgbTriple colour) {
    return RGB(colour.red, colour.green, colour.blue);
}
