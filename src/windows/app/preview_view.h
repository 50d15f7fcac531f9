// What part of a canvas the preview shows, and how large.
#pragma once

#include "animation/canvas_zoom.h"
#include "platform/windows_api.h"

class PreviewView {
public:
    // The size of the place that it draws to, with `natural` pixels in a row for one of a canvas at its natural size,
    // and the size of the canvas that it shows. A canvas of another size than before is shown whole, at most at its
    // natural size.
    void SetPlace(int width, int height, int natural);
    void SetCanvas(int width, int height);

    // Shows the canvas whole again.
    void Fit();

    // One step nearer or farther; the point of the canvas under `at`, in the place, stays there.
    void StepNearer(bool nearer, POINT at);

    // Moves the canvas by so many pixels of the place, as far as some of it lies beyond the edges.
    void MoveBy(int x, int y);

    Zoom CurrentZoom() const { return zoom_; }
    // Where the upper left corner of the canvas is drawn in the place.
    POINT Corner() const { return corner_; }
    // The rectangle around `area` of the canvas, one pixel of the place outside of it.
    RECT Around(const struct Rectangle& area) const;

private:
    void Settle();

    int placeWidth_ = 0, placeHeight_ = 0, canvasWidth_ = 0, canvasHeight_ = 0, natural_ = 1;
    bool isFitted_ = true;
    Zoom zoom_;
    POINT corner_ = {};
};
