#include "size/recode.h"

#include "gif/lzw_limits.h"
#include "size/code_bits.h"

namespace {

// Takes codes out of sub-blocks.
class CodeReader {
public:
    explicit CodeReader(std::span<const uint8_t> subBlocks) : bytes_(subBlocks) {}

    // The next code; -1 at the end.
    int Next(unsigned width) {
        while (held_ < width) {
            if (left_ == 0 && !Open()) return -1;
            bits_ |= uint32_t{bytes_[at_++]} << held_;
            held_ += 8;
            --left_;
        }
        const unsigned code = bits_ & ((1u << width) - 1);
        bits_ >>= width;
        held_ -= width;
        return static_cast<int>(code);
    }

private:
    bool Open() {
        if (at_ >= bytes_.size() || bytes_[at_] == 0 || bytes_.size() - at_ <= bytes_[at_]) return false;
        left_ = bytes_[at_++];
        return true;
    }

    std::span<const uint8_t> bytes_;
    size_t at_ = 0, left_ = 0;
    uint32_t bits_ = 0;
    unsigned held_ = 0;
};

// The codes that a decoder knows at some point, without what they stand for.
struct Table {
    explicit Table(int codeSize) : clear(1u << codeSize) { Clear(); }
    void Clear() {
        next = clear + 2;
        width = 1;
        while (1u << width <= clear) ++width;
        isFresh = true;
    }
    // After each code but the first one a decoder adds a string.
    void Advance() {
        if (!isFresh && next < kMostCodes && ++next == 1u << width && width < kMostCodeBits) ++width;
        isFresh = false;
    }

    unsigned clear, next, width;
    bool isFresh = true;  // no code since the last clear code
};

class Recoding {
public:
    Recoding(std::span<const uint8_t> data, const IndexMap& map, int codeSize)
        : reader_(data.subspan(1)), map_(map), from_(data[0]), to_(codeSize), lengths_(kMostCodes, 1) {}

    bool Run(uint64_t pixels) {
        bits_.Put(to_.clear, to_.width);
        uint64_t done = 0;
        while (done < pixels) {
            const int code = reader_.Next(from_.width);
            if (code < 0 || static_cast<unsigned>(code) == from_.clear + 1) return false;
            if (static_cast<unsigned>(code) == from_.clear) {
                ClearBoth();
                continue;
            }
            if (!Take(static_cast<unsigned>(code), &done)) return false;
        }
        bits_.Put(to_.clear + 1, to_.width);
        return done == pixels;
    }

    void Deliver(int codeSize, EncodedPixels* result) {
        result->bits = bits_.Bits();
        result->data = bits_.InSubBlocks(codeSize);
    }

private:
    void ClearBoth() {
        if (!to_.isFresh) bits_.Put(to_.clear, to_.width);
        from_.Clear();
        to_.Clear();
    }

    bool Take(unsigned code, uint64_t* done) {
        const bool isLiteral = code < from_.clear;
        const unsigned known = from_.isFresh || from_.next == kMostCodes ? from_.next : from_.next + 1;
        if (!isLiteral && code >= known) return false;
        // The string that this code makes known is one longer than the one before.
        if (!from_.isFresh && from_.next < kMostCodes) lengths_[from_.next] = last_ + 1;
        last_ = isLiteral ? 1 : lengths_[code];
        const unsigned written = isLiteral ? map_[code] : code - from_.clear + to_.clear;
        if (written >= kMostCodes) return false;
        bits_.Put(written, to_.width);
        from_.Advance();
        to_.Advance();
        *done += last_;
        return true;
    }

    CodeReader reader_;
    const IndexMap& map_;
    Table from_, to_;
    CodeBitString bits_;
    std::vector<uint32_t> lengths_;  // of the strings of the old codes
    uint32_t last_ = 0;              // of the last code's string
};

}  // namespace

bool RecodeStrings(std::span<const uint8_t> data, uint64_t pixels, const IndexMap& map, int codeSize,
                   EncodedPixels* result) {
    *result = {};
    if (data.size() < 2 || data[0] < kLeastCodeSize || data[0] > kMostCodeSize) return false;
    Recoding recoding(data, map, codeSize);
    if (!recoding.Run(pixels)) return false;
    recoding.Deliver(codeSize, result);
    return true;
}
