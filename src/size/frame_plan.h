// Which frames an animation is written as: what is merged, the rectangle of each, how it is disposed of.
#pragma once

#include "size/plan_options.h"
#include "size/planned_frame.h"

struct FramePlan {
    ColourIds colours;
    std::vector<PlannedFrame> frames;
};

// Composes the animation, whose canvas must fit (FitsCanvas) and which has a frame and no texts drawn, and plans its
// frames. Frames that show the same become one where all players take the same time for it; with `keepFrames` none do.
// The plan is the same whatever the number of threads. May throw std::bad_alloc.
PlanResult PlanFrames(const Animation& animation, const PlanOptions& options, FramePlan* plan);
