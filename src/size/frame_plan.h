// Which frames an animation is written as: what is merged, the rectangle of each, how it is disposed of.
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "animation/animation.h"
#include "size/code_search.h"
#include "size/colour_ids.h"

// One frame to be written. Where `free` is not 0, the canvas before it shows what it is to show already.
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

struct FramePlan {
    ColourIds colours;
    std::vector<PlannedFrame> frames;
};

struct PlanOptions {
    Effort effort = Effort::kNormal;
    bool keepFrames = false;  // as many frames as there are
    size_t threads = 1;
    int givesUp = 0;  // changes of colour up to so much (ColourDistance) from what a pixel shows do not count
    const std::atomic<bool>* stop = nullptr;  // becomes true when the plan is no longer wanted
};

enum class PlanResult : uint8_t { kDone, kTooManyColours, kNoMemory, kStopped };

// Composes the animation, whose canvas must fit (FitsCanvas) and which has a frame and no texts drawn, and plans its
// frames. Frames that show the same become one where all players take the same time for it; with `keepFrames` none do.
// May throw std::bad_alloc.
PlanResult PlanFrames(const Animation& animation, const PlanOptions& options, FramePlan* plan);
