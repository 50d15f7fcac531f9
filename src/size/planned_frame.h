// A frame to be written: a rectangle of colours, some of which need not be drawn.
#pragma once

#include <vector>

#include "animation/animation.h"
#include "size/numbered_canvas.h"

// Where `free` is not 0, the canvas before it shows what it is to show already.
struct PlannedFrame {
    uint32_t firstFrame = 0, lastFrame = 0;  // those of the animation that it stands for
    uint32_t delay = 0;                      // of all of them, as it is to be written
    Rectangle box;                           // never empty
    uint8_t disposal = kDisposeLeave;        // kDisposeLeave, kDisposeBackground or kDisposePrevious
    bool isLast = false;
    std::vector<ColourId> ids;       // of the canvas in `box`, row by row
    std::vector<uint8_t> free;       // as many
    std::vector<ColourId> needed;    // the colours of pixels that are not free, each once, ascending
    std::vector<ColourId> offered;   // further ones that free pixels show; never kTransparentId
    bool needsTransparency = false;  // some pixel that is free shows nothing
    bool hasFree = false;
};

// Fills in what is drawn in the frame's box to show `shown` where `before` stands. `colours` is the number of colours
// that there are, or more. May throw std::bad_alloc.
void TakePixels(const NumberedCanvas& before, const NumberedCanvas& shown, size_t colours, PlannedFrame* frame);
