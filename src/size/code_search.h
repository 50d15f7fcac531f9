// The shortest LZW code stream for the pixels of one image.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <span>
#include <vector>

enum class Effort : uint8_t { kFast, kNormal, kMax };

// For every index the indices that may be written in its place: bit q of row p.
using AlikeColours = std::array<std::bitset<256>, 256>;

// The pixels of one image in the order in which they are stored.
struct PixelsToEncode {
    std::span<const uint8_t> pixels;      // indices, all below 1 << codeSize
    std::span<const uint8_t> free;        // empty, or as many: where not 0, the pixel may also be `transparent`
    int transparent = -1;                 // an index below 1 << codeSize; must be given when `free` is
    int codeSize = 8;                     // minimum code size, 2 to 8
    const AlikeColours* alike = nullptr;  // null: pixels are exactly themselves (or transparent where free)
};

struct EncodedPixels {
    std::vector<uint8_t> data;  // minimum code size, sub-blocks, closing empty sub-block
    uint64_t bits = 0;          // of the codes
};

// The shortest code stream found. Gives up above `mostBits` (0: no bound) and returns false with an empty result, as
// it does when memory runs out. Deterministic.
[[nodiscard]] bool SearchCodes(const PixelsToEncode& image, Effort effort, uint64_t mostBits, EncodedPixels* result);
