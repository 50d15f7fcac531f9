// The palette that a new animation starts from. Part of editing/animation_build.h.
#pragma once

#include "editing/animation_build.h"

struct AnimationPalette {
    RgbTriples colours;
    int depth;  // 1 to 8
};

// Chooses the palette by the settings. False when it is to be that of the first file and that has no readable image.
[[nodiscard]] bool ChooseAnimationPalette(WindowHandle owner, const AnimationSettings& settings,
                                          const std::string& firstFile, AnimationPalette* palette);

// Makes it the global palette of the document.
[[nodiscard]] bool SetGlobalPalette(BlockList* document, const AnimationPalette& palette);
