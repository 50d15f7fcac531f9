#include "size/code_search.h"

#include <new>

#include "gif/lzw_limits.h"
#include "size/code_bits.h"

namespace {

// A stand-in: greedy matches, a clear code when the table is full. Of a free pixel the colour is taken that goes on
// with the match, its own first.
class GreedySearch {
public:
    explicit GreedySearch(const PixelsToEncode& image)
        : image_(image), children_(size_t{kMostCodes} << image.codeSize), clear_(1u << image.codeSize) {}

    void Run(EncodedPixels* result) {
        Clear();
        size_t at = 0;
        int first = image_.pixels.empty() ? -1 : image_.pixels[0];
        while (first >= 0) {
            unsigned code = static_cast<unsigned>(first);
            int next = -1;
            for (++at; at < image_.pixels.size(); ++at) {
                next = image_.pixels[at];
                unsigned child = Child(code, next);
                if (!child && IsFree(at) && (child = Child(code, image_.transparent))) next = image_.transparent;
                if (!child) break;
                code = child;
                next = -1;
            }
            bits_.Put(code, width_);
            if (at < image_.pixels.size()) Add(code, next);
            first = at < image_.pixels.size() ? next : -1;
        }
        bits_.Put(clear_ + 1, width_);
        result->bits = bits_.Bits();
        result->data = bits_.InSubBlocks(image_.codeSize);
    }

private:
    bool IsFree(size_t at) const { return !image_.free.empty() && image_.free[at]; }
    uint16_t& Child(unsigned code, int index) {
        return children_[(size_t{code} << image_.codeSize) + static_cast<size_t>(index)];
    }
    void Clear() {
        bits_.Put(clear_, width_ ? width_ : static_cast<unsigned>(image_.codeSize) + 1);
        std::fill(children_.begin(), children_.end(), uint16_t{0});
        next_ = clear_ + 2;
        width_ = static_cast<unsigned>(image_.codeSize) + 1;
    }
    void Add(unsigned code, int index) {
        if (next_ == kMostCodes) return Clear();
        Child(code, index) = static_cast<uint16_t>(next_++);
        if (next_ > (1u << width_) && width_ < kMostCodeBits) ++width_;
    }

    const PixelsToEncode& image_;
    CodeBitString bits_;
    std::vector<uint16_t> children_;
    unsigned clear_, next_ = 0, width_ = 0;
};

}  // namespace

bool SearchCodes(const PixelsToEncode& image, Effort, uint64_t mostBits, EncodedPixels* result) {
    *result = {};
    try {
        GreedySearch(image).Run(result);
    } catch (const std::bad_alloc&) {
        *result = {};
        return false;
    }
    if (mostBits == 0 || result->bits <= mostBits) return true;
    *result = {};
    return false;
}
