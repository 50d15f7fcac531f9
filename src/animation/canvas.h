// Canvases of one's own, and comparing them.
#pragma once

#include <memory>

#include "animation/paint_image.h"

// Pixels as PaintImage makes them; at first all are transparent.
class Canvas {
public:
    // Gives it `width` x `height` pixels. False when memory runs out.
    [[nodiscard]] bool Create(int width, int height);

    const CanvasView& View() const { return view_; }
    Rectangle Area() const { return {0, 0, view_.width, view_.height}; }

private:
    CanvasView view_ = {};
    std::unique_ptr<uint32_t[]> pixels_;
};

// Copies what both canvases have of `area`.
void CopyPixels(const CanvasView& to, const CanvasView& from, const Rectangle& area);

// Makes `area`, which lies on the canvas, transparent.
void ClearPixels(const CanvasView& canvas, const Rectangle& area);

// Of two canvases of the same size: the smallest rectangle outside of which they are equal.
Rectangle Difference(const CanvasView& a, const CanvasView& b);

// The smallest rectangle with all pixels that `shown` has and where `wanted`, of the same size, is transparent. No
// image can make it so.
Rectangle AreaToClear(const CanvasView& shown, const CanvasView& wanted);
