// Composing frames in the plainest form, from the first one on and pixel by pixel: what the fast one must equal.
#pragma once

#include <random>
#include <vector>

#include "animation/animation.h"

using Pixels = std::vector<uint32_t>;

// What the canvas shows at each frame, without texts.
std::vector<Pixels> ComposeLiterally(const Animation& animation);

// A document of `images` random images of all bit depths, disposals and kinds of transparency, on a screen that many of
// them leave, with controls and palettes that some of them lack.
BlockList RandomAnimation(std::mt19937& random, int images);
