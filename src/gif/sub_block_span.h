// Chains of data sub-blocks in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

struct SubBlockChain {
    size_t end;  // behind its terminator, or the size of the bytes that cut it off
    size_t cut;  // cut off: the length byte of the sub-block that is not whole, or `end` when only the terminator lacks
    bool isCutOff;
};

// Walks the chain that starts at index `at` of `bytes`.
inline SubBlockChain WalkSubBlocks(std::span<const uint8_t> bytes, size_t at) {
    while (at < bytes.size()) {
        size_t length = bytes[at];
        if (length == 0) return {at + 1, at, false};
        if (bytes.size() - at <= length) return {bytes.size(), at, true};
        at += 1 + length;
    }
    return {bytes.size(), bytes.size(), true};
}
