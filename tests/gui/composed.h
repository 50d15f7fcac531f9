// What the composing engine says a frame looks like. Apart from the window tests' own headers, in which names stand for
// other things.
#pragma once

#include <cstdint>
#include <vector>

#include "gif/block_list.h"

struct ComposedFrame {
    int width = 0, height = 0;
    std::vector<uint32_t> pixels;  // 0xRRGGBB, rows from the top
    std::vector<bool> isOpaque;
};

ComposedFrame Compose(const BlockList& list, uint32_t frame);
