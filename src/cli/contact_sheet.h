// All frames on one picture.
#pragma once

#include <span>
#include <string>

#include "animation/animation.h"
#include "animation/canvas_png.h"

// Writes the frames (at least one, ascending) as a PNG file at `path`, `columns` of them in a row; 0 for as many as
// there are rows. In memory are one canvas and one row of them. False, with the reason on standard error, when that
// fails.
bool WriteContactSheet(const Animation& animation, std::span<const uint32_t> frames, unsigned columns,
                       const PngStyle& style, const std::string& path);
