// All frames on one picture.
#pragma once

#include <span>

#include "animation/animation.h"
#include "animation/canvas_png.h"
#include "animation/encoded_frames.h"

// How many frames stand beside and below each other, and how large that is.
struct SheetLayout {
    size_t columns = 0, rows = 0;
    uint64_t width = 0, height = 0;  // in pixels
    uint64_t rowPixels = 0;          // of one row of frames

    // Whether the sheet can be made: a row of it is held in memory.
    bool Fits() const;
};

// That of so many frames (at least one) in `columns` columns; 0 for as many as there are rows.
SheetLayout LayOutSheet(const Animation& animation, size_t frames, unsigned columns);

// Adds the frames (ascending) to `png`, laid out as LayOutSheet says for them, which must fit. In memory are one canvas
// and one row of frames.
FrameResult EncodeSheet(const Animation& animation, std::span<const uint32_t> frames, const SheetLayout& layout,
                        const PngStyle& style, const WorkWatch& watch, ByteBuffer* png);
