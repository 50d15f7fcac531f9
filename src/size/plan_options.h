// How the frames of an animation are to be planned, and what came of it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>

#include "size/code_search.h"

struct PlanOptions {
    Effort effort = Effort::kNormal;
    bool keepFrames = false;  // as many frames as there are
    size_t threads = 1;
    int givesUp = 0;  // changes of colour up to so much (ColourDistance) from what a pixel shows do not count
    const std::atomic<bool>* stop = nullptr;    // becomes true when the plan is no longer wanted
    std::function<void(size_t frames)> onRead;  // so many have been composed; from the thread that plans

    bool StopRequested() const { return stop && *stop; }
};

enum class PlanResult : uint8_t { kDone, kTooManyColours, kNoMemory, kStopped };
