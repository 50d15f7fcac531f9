#include "size/code_sequence.h"

#include <array>

namespace {

constexpr size_t kSubBlockBytes = 255;

// Bytes in sub-blocks, each behind its length.
class SubBlocks {
public:
    explicit SubBlocks(unsigned codeSize) : bytes_{static_cast<uint8_t>(codeSize)} {}

    void Reserve(uint64_t bits) {
        const uint64_t bytes = bits / 8 + 1;
        bytes_.reserve(static_cast<size_t>(bytes + bytes / kSubBlockBytes + 4));
    }

    void Put(unsigned code, unsigned width) {
        held_ |= uint64_t{code} << count_;
        for (count_ += width; count_ >= 8; count_ -= 8, held_ >>= 8) PutByte(static_cast<uint8_t>(held_));
    }

    std::vector<uint8_t> Finish() {
        if (count_) PutByte(static_cast<uint8_t>(held_));
        bytes_.push_back(0);
        return std::move(bytes_);
    }

private:
    void PutByte(uint8_t byte) {
        if (room_ == 0) {
            length_ = bytes_.size();
            bytes_.push_back(0);
            room_ = kSubBlockBytes;
        }
        bytes_.push_back(byte);
        ++bytes_[length_];
        --room_;
    }

    std::vector<uint8_t> bytes_;
    uint64_t held_ = 0;  // bits that fill no byte yet
    unsigned count_ = 0;
    size_t length_ = 0;  // where the length of the open sub-block stands
    size_t room_ = 0;    // bytes that it can still take
};

}  // namespace

std::vector<uint8_t> PackCodes(const CodeSequence& sequence, unsigned codeSize) {
    const unsigned clearCode = 1u << codeSize;
    SubBlocks blocks(codeSize);
    blocks.Reserve(sequence.bits);
    uint64_t count = 0;  // codes since the clear code
    for (unsigned code : sequence.codes) {
        blocks.Put(code, CodeWidth(codeSize, count++));
        if (code == clearCode) count = 0;
    }
    blocks.Put(clearCode + 1, CodeWidth(codeSize, count));
    return blocks.Finish();
}

std::vector<size_t> StringStarts(const CodeSequence& sequence, unsigned codeSize, std::vector<size_t>* clears) {
    const unsigned clearCode = 1u << codeSize;
    std::array<size_t, kMostCodes> lengths;
    std::fill_n(lengths.begin(), clearCode, 1);
    std::vector<size_t> starts;
    clears->clear();
    size_t at = 0, last = 0;
    unsigned next = 0;
    for (unsigned code : sequence.codes) {
        if (code == clearCode) {
            if (at) clears->push_back(at);
            next = clearCode + 1;  // the first string makes none
            continue;
        }
        if (next > clearCode + 1 && next < kMostCodes) lengths[next] = last + 1;
        if (next < kMostCodes) ++next;
        starts.push_back(at);
        last = lengths[code];
        at += last;
    }
    return starts;
}
