// The timeline of an animation in print.
#pragma once

#include <cstdint>
#include <span>

#include "animation/animation.h"

// Prints a line for each of `frames` (numbers of the animation's frames): where it comes from, when it starts and how
// long it is shown, both in hundredths of a second as browsers play them, its delay as written, and its rectangle. The
// last line tells how many frames there are in all, how long they take and how often they are played.
void PrintTimes(const Animation& animation, std::span<const uint32_t> frames);

// The same as one JSON object.
void PrintTimesAsJson(const Animation& animation, std::span<const uint32_t> frames);
