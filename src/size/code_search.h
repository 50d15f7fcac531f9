// The smallest LZW code stream for an image. Any stream that a decoder turns back into the pixels will do, and there
// are many: where to clear the dictionary and whether at all, where to end a string early so that the next reaches
// farther, and which of the allowed indices to write for a pixel.
#pragma once

#include <array>
#include <atomic>
#include <bitset>
#include <cstdint>
#include <span>
#include <vector>

enum class Effort : uint8_t {
    kFast,    // a few passes over the pixels
    kNormal,  // tens of them: the places of clear codes are searched, strings may end early
    kMax,     // hundreds
};

// For every index the indices that may be written in its place: bit q of row p. That of p itself need not be set.
using AlikeColours = std::array<std::bitset<256>, 256>;

// The pixels of one image in the order in which they are stored.
struct PixelsToEncode {
    std::span<const uint8_t> pixels;          // indices, all below 1 << codeSize
    std::span<const uint8_t> free;            // empty, or as many: where not 0, the pixel may also be `transparent`
    int transparent = -1;                     // an index below 1 << codeSize; must be given when `free` is
    int codeSize = 8;                         // minimum code size, 2 to 8
    const AlikeColours* alike = nullptr;      // null: pixels are exactly themselves (or transparent where free). Else a
                                              // row's indices must be below 1 << codeSize, too
    const std::atomic<bool>* stop = nullptr;  // becomes true when the result is no longer wanted
};

struct EncodedPixels {
    std::vector<uint8_t> data;  // minimum code size, sub-blocks, closing empty sub-block
    uint64_t bits = 0;          // of the codes
};

// Makes `*result` the shortest code stream that was found, never longer than what EncodeImageData would write for the
// pixels as they are (but for one bit: its end code has not the width that decoders expect where that has just grown).
// False, with an empty result, when it takes more than `mostBits` bits (0: any number will do),
// when memory runs out, and when it was stopped. The same arguments always give the same stream.
[[nodiscard]] bool SearchCodes(const PixelsToEncode& image, Effort effort, uint64_t mostBits, EncodedPixels* result);
