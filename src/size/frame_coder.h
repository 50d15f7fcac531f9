// The smallest IMAGE block that shows what a planned frame is to show.
#pragma once

#include <atomic>
#include <cstdint>
#include <vector>

#include "gif/block_list.h"
#include "size/frame_plan.h"
#include "size/palette_plan.h"

// What all frames share.
struct CodingTask {
    const FramePlan* plan = nullptr;
    const Animation* animation = nullptr;  // that was planned
    PaletteIds global;                     // of the document to be written; empty without one
    int globalDepth = 0;
    bool keepsGlobal = false;  // it is the one that the document had
    Effort effort = Effort::kNormal;
    int alikeWithin = 0;                      // colours so near (ColourDistance) may be written for each other
    const std::atomic<bool>* stop = nullptr;  // becomes true when the frames are no longer wanted
};

struct CodedFrame {
    std::vector<uint8_t> block;  // the bytes of the IMAGE block; empty: that of the document as it stands
    uint64_t bytes = 0;          // of the block
    int transparent = kNoTransparency;
};

enum class CodingResult : uint8_t {
    kDone,
    kCantBeShown,  // in none of the forms that it knows
    kNoMemory,
};

// Finds the block for `frame`. May throw std::bad_alloc.
CodingResult CodeFrame(const CodingTask& task, const PlannedFrame& frame, CodedFrame* coded);
