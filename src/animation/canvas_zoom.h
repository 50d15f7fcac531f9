// A canvas as people look at it: enlarged or reduced, with a checkerboard where nothing covers it.
#pragma once

#include "animation/paint_image.h"

// `enlarge` pixels of the picture stand for `reduce` pixels of the canvas; one of them is 1.
struct Zoom {
    int enlarge = 1, reduce = 1;
    bool operator==(const Zoom&) const = default;
};

// The size in the picture of `canvasPixels` pixels in a row or column of the canvas.
inline int ZoomedSize(int canvasPixels, const Zoom& zoom) {
    return (canvasPixels * zoom.enlarge + zoom.reduce - 1) / zoom.reduce;
}

// The largest zoom at which `width` x `height` pixels of a canvas fit into a place of that size, and which enlarges no
// further than `most` times.
Zoom ZoomToFit(int width, int height, int placeWidth, int placeHeight, int most);

constexpr int kCheckPixels = 8;  // of the picture: the side of a square of the checkerboard on usual screens
constexpr uint32_t kLightCheck = 0xFFFFFF, kDarkCheck = 0xCCCCCC;

// A picture of `width` x `height` pixels as the screen has them: 0xRRGGBB, rows from the top.
struct ScreenPicture {
    uint32_t* pixels;
    int width, height;

    uint32_t* Row(int y) const { return pixels + static_cast<size_t>(y) * static_cast<size_t>(width); }
};

// Draws the canvas with its upper left corner at (left, top) of the picture, which may lie outside of it. What is
// around the canvas stays. A reduced pixel is the mean of those that it stands for, or of 16 of them when they are
// more. The squares of the checkerboard have sides of `check` pixels, at least 1.
void DrawZoomed(const ScreenPicture& picture, const CanvasView& canvas, const Zoom& zoom, int left, int top,
                int check = kCheckPixels);
