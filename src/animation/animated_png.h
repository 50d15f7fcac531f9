// An animation as an animated PNG file.
#pragma once

#include <span>

#include "animation/canvas_png.h"
#include "animation/encoded_frames.h"
#include "platform/file.h"

// Writes the frames (at least one, ascending) with their times to `file`: the whole canvas first, then what changes.
// kNotDelivered when the file can't be written. A canvas without pixels can't be one: do not ask.
FrameResult WriteAnimatedPng(const Animation& animation, std::span<const uint32_t> frames, const PngStyle& style,
                             const WorkWatch& watch, File& file);
