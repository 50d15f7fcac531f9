// Putting one image on a canvas.
#pragma once

#include "animation/rectangle.h"
#include "gif/block.h"

// A pixel is four bytes in memory: red, green, blue, opacity (0 or 255). One that is transparent is all zero.
constexpr uint32_t kTransparent = 0;

// A canvas of `width` x `height` pixels, rows from the top, or a part of one: rows `top` to `top` + `height` - 1 of it.
struct CanvasView {
    uint32_t* pixels;
    int width, height;
    int top = 0;

    uint32_t* Row(int y) const { return pixels + static_cast<size_t>(y - top) * static_cast<size_t>(width); }
};

// The pixel of an opaque colour.
uint32_t PixelOf(RgbTriple colour);

// Draws the IMAGE `image` in the colours of `palette` at its place, as much as lies on the canvas; pixels of
// `transparentIndex` (kNoTransparency: none) leave the canvas as it is. Of an image that could not be decoded nothing
// is drawn. False when it can't be reached or memory runs out.
[[nodiscard]] bool PaintImage(const CanvasView& canvas, const Block& image, const RgbTriple* palette,
                              int transparentIndex);
