// Images made of what a canvas is to show.
#pragma once

#include "animation/canvas.h"
#include "gif/block_list.h"
#include "platform/result.h"

struct CanvasImage {
    Block image;  // an IMAGE for `area`, in the global palette or with one of its own
    int transparentIndex = -1;
    bool isExact = true;  // false: there were more colours than an image can have, and the nearest were taken
};

// An image that makes `area` (not empty) of the canvas `before` look as in `wanted`, a canvas of the same size. Where
// `wanted` is transparent `before` has to be so, too. Fails with kNoMemory.
Result<CanvasImage> MakeCanvasImage(const CanvasView& before, const CanvasView& wanted, const Rectangle& area,
                                    const GlobalPalette& global);
