// LZW codes as numbers, and what they come to in a file.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

#include "gif/lzw_limits.h"

// Bits of the code that `count` others precede since the clear code. The first one adds nothing to the decoder's table,
// each further one a string, until the table is full: from then on codes keep their 12 bits. Clear and end code follow
// the same rule.
inline unsigned CodeWidth(unsigned codeSize, uint64_t count) {
    const uint64_t known = (1u << codeSize) + 1 + std::min<uint64_t>(count, kMostCodes);
    return std::min(static_cast<unsigned>(std::bit_width(known)), kMostCodeBits);
}

// The codes of an image in their order: a clear code wherever the dictionary starts afresh, the first one included. The
// end code is left out.
struct CodeSequence {
    std::vector<uint16_t> codes;
    uint64_t bits = 0;  // of all of them and the end code
};

// The minimum code size, the codes and the end code in sub-blocks of 255 bytes, and the empty sub-block behind them.
std::vector<uint8_t> PackCodes(const CodeSequence& sequence, unsigned codeSize);

// The pixel with which each string of a sequence begins, and in `*clears` where its clear codes stand among the pixels,
// the first one left out.
std::vector<size_t> StringStarts(const CodeSequence& sequence, unsigned codeSize, std::vector<size_t>* clears);
