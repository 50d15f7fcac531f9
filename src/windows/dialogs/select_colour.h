// The colour picker: a grid of a palette's colours.
#pragma once

#include <cstdint>

#include "imaging/image_bitmap.h"
#include "platform/windows_api.h"

// What the picker's dialog works on.
struct ColourRequest {
    const RgbTriple* palette;  // 256 entries
    uint32_t count;            // how many of them can be chosen
    uint32_t current;          // the index chosen
};

// Lets the user choose one of the first `count` entries of `palette` (256 entries). Returns whether one was chosen;
// `*current` is then its index, otherwise unchanged.
bool SelectColour(HWND parent, const RgbTriple* palette, uint32_t count, uint32_t* current);
