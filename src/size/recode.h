// The strings of an image's codes kept, written with other numbers.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "size/code_search.h"

using IndexMap = std::array<uint8_t, 256>;

// Writes image data (minimum code size, sub-blocks) of exactly `pixels` pixels anew: each pixel p becomes map[p], and
// the minimum code size `codeSize`, which has to hold them all. The strings stay as the file's encoder chose them,
// which is what makes files of lossy encoders small. False when that can't be done: for data that is damaged, or does
// not end with its last pixel, or whose codes have no room. May throw std::bad_alloc.
[[nodiscard]] bool RecodeStrings(std::span<const uint8_t> data, uint64_t pixels, const IndexMap& map, int codeSize,
                                 EncodedPixels* result);
