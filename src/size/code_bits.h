// LZW codes as bits, and the bits as data sub-blocks.
#pragma once

#include <cstdint>
#include <vector>

#include "gif/descriptor.h"

// Codes, least significant bit first. Adding throws std::bad_alloc when memory runs out.
class CodeBitString {
public:
    void Put(unsigned code, unsigned width) {
        pending_ |= uint64_t{code} << pendingBits_;
        pendingBits_ += width;
        bits_ += width;
        for (; pendingBits_ >= 8; pendingBits_ -= 8, pending_ >>= 8) bytes_.push_back(static_cast<uint8_t>(pending_));
    }
    uint64_t Bits() const { return bits_; }

    // The image data of these codes: minimum code size, sub-blocks as long as they may be, the empty one.
    std::vector<uint8_t> InSubBlocks(int codeSize) {
        if (pendingBits_ > 0) bytes_.push_back(static_cast<uint8_t>(pending_));
        std::vector<uint8_t> data;
        data.reserve(bytes_.size() + bytes_.size() / kMostSubBlockBytes + 3);
        data.push_back(static_cast<uint8_t>(codeSize));
        for (size_t at = 0; at < bytes_.size(); at += kMostSubBlockBytes) {
            const size_t count = bytes_.size() - at < kMostSubBlockBytes ? bytes_.size() - at : kMostSubBlockBytes;
            data.push_back(static_cast<uint8_t>(count));
            data.insert(data.end(), bytes_.data() + at, bytes_.data() + at + count);
        }
        data.push_back(0);
        return data;
    }

private:
    std::vector<uint8_t> bytes_;
    uint64_t pending_ = 0, bits_ = 0;
    unsigned pendingBits_ = 0;
};
