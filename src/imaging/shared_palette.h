// One palette for many images.
#pragma once

#include <span>

#include "imaging/image_bitmap.h"
#include "platform/result.h"

struct SharedPalette {
    RgbTriples colours = {};
    int count = 0;  // how many of them were made; those behind them are black
};

// Makes a palette of at most `wanted` colours (1 to 256; more counts as 256) from the pixels of every image.
// When the images have no more colours than that, it is exactly their colours, in the order in which the stored rows
// (the bottom row of each image first) show them; otherwise the result of a median cut (imaging/median_cut.h).
// The images are meant to have 24 bits a pixel. Any other counts with the colours that ExpandToTrueColour would give
// it, so that expanding the images first makes no difference. Fails with kNoMemory.
Result<SharedPalette> BuildSharedPalette(int wanted, std::span<const MemoryHandle> images);
