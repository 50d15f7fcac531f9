// The image that a planned frame has in the document, as one more form that it may take.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "size/frame_plan.h"

struct OldImage {
    const Block* block = nullptr;
    Rectangle place;              // its own; may reach beyond the screen
    std::vector<uint8_t> pixels;  // indices, row by row
    int transparent = kNoTransparency;
    std::array<bool, 256> isUsed = {};   // by index
    std::array<ColourId, 256> ids = {};  // of the colours used; kTransparentId for the transparent index
    std::vector<uint8_t> data;           // minimum code size and sub-blocks, as the file has them; may be empty
    uint64_t blockBytes = 0;             // of the whole block in the file; 0 when it has none
    bool isInterlaced = false, hasPalette = false;
};

// The image of the frame, when it shows what it is to show also on the canvas that the plan has before it. Nothing when
// it does not, or can't be read. May throw std::bad_alloc.
std::optional<OldImage> FindOldImage(const Animation& animation, const ColourIds& colours, const PlannedFrame& frame);
