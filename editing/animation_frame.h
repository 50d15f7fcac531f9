// One frame of a new animation. Part of editing/animation_build.h.
#pragma once

#include "editing/animation_palette.h"

// Appends the CONTROL block of a frame and the IMAGE block with the first image of the file at `path`, fitted to
// `palette`; for a shared palette the image is left as the file has it. `*skipped` tells whether the user agreed to go
// on without the image.
BuildOutcome AppendFrame(WindowHandle owner, const AnimationSettings& settings, const AnimationPalette& palette,
                         const std::string& path, BlockList* document, bool* skipped);
