// Flashes that can harm: success criterion 2.3.1 of the Web Content Accessibility Guidelines (WCAG 2.2, W3C), "Three
// Flashes or Below Threshold", and its definitions "general flash and red flash thresholds" and "relative luminance".
//
// - A general flash is a pair of opposing changes in relative luminance of a tenth or more of the maximum, where the
//   darker image is below 0.80. A red flash is a pair of opposing changes from or to a saturated red.
// - Both harm when there are more than three within a second and they cover more than a quarter of the picture at once.
//   (The guidelines speak of a quarter of 10 degrees of vision. A picture may fill that.)
//
// What is transparent counts as white, as most pages are.
#pragma once

#include <vector>

#include "animation/animation.h"
#include "platform/work_watch.h"

enum class FlashKind : uint8_t { kGeneral, kRed };

// Frames in which it flashes more than three times within a second.
struct Flashing {
    FlashKind kind = FlashKind::kGeneral;
    uint32_t firstFrame = 0, lastFrame = 0;
    uint32_t flashes = 0;  // in the worst second
};

// Plays the animation, whose canvas must fit (FitsCanvas), and adds what it finds. A repeat counts as going on. False
// when memory runs out, or the watch does not want it to go on.
[[nodiscard]] bool FindFlashes(const Animation& animation, std::vector<Flashing>* found, const WorkWatch& watch = {});
