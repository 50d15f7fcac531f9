#include "size/pixel_costs.h"

#include <algorithm>
#include <cmath>

#include "gif/descriptor.h"
#include "gif/interlace.h"
#include "gif/lzw_encoder.h"
#include "gif/lzw_limits.h"
#include "gif/source_bytes.h"
#include "gif/sub_blocks.h"
#include "platform/bytes.h"

namespace {

using Bytes = std::span<const uint8_t>;

// Puts the costs of the pixels in their places, in the order of the data.
class Places {
public:
    Places(PixelCosts* costs, bool interlaced)
        : costs_(*costs), walk_(costs->height, interlaced, Manner::kWhole), left_(Room()) {}

    // A code of `width` bits stands for the next `count` pixels.
    void Put(unsigned width, uint64_t count) {
        count = std::min(count, left_);
        if (count == 0) return;
        const float each = static_cast<float>(width) / static_cast<float>(count);
        costs_.least = costs_.pixels ? std::min(costs_.least, each) : each;
        costs_.most = std::max(costs_.most, each);
        costs_.pixels += count;
        costs_.pixelBits += width;
        left_ -= count;
        while (count > 0) count -= PutInRow(each, count);
    }

private:
    uint64_t Room() const { return static_cast<uint64_t>(costs_.width) * static_cast<uint64_t>(costs_.height); }

    // Returns how many went into the current row.
    uint64_t PutInRow(float each, uint64_t count) {
        const auto width = static_cast<size_t>(costs_.width);
        const auto fits = static_cast<size_t>(std::min<uint64_t>(count, width - x_));
        std::fill_n(costs_.bits.get() + static_cast<size_t>(walk_.Row()) * width + x_, fits, each);
        x_ += fits;
        if (x_ == width) {
            x_ = 0;
            walk_.Advance();
        }
        return fits;
    }

    PixelCosts& costs_;
    RowWalk walk_;
    size_t x_ = 0;
    uint64_t left_;
};

// A dictionary that knows of each string only how long it is.
class StringLengths {
public:
    explicit StringLengths(unsigned codeSize) : clearCode_(1u << codeSize) { Clear(codeSize); }

    unsigned Width() const { return width_; }
    bool IsPossible(unsigned code) const { return code < next_ || (code == next_ && previous_ > 0); }

    void Clear(unsigned codeSize) {
        next_ = clearCode_ + 2;
        width_ = codeSize + 1;
        previous_ = 0;
    }

    // The pixels that a possible code stands for.
    unsigned Take(unsigned code) {
        const unsigned length = LengthOf(code);
        if (previous_ > 0 && next_ < kMostCodes) {
            lengths_[next_] = static_cast<uint16_t>(previous_ + 1);
            if (++next_ >= 1u << width_ && width_ < kMostCodeBits) ++width_;
        }
        return previous_ = length;
    }

private:
    unsigned LengthOf(unsigned code) const {
        if (code < clearCode_) return 1;
        return code == next_ ? previous_ + 1 : lengths_[code];
    }

    unsigned clearCode_;
    unsigned next_ = 0, width_ = 0;
    unsigned previous_ = 0;  // length of the string before; 0 for none
    uint16_t lengths_[kMostCodes] = {};
};

void FollowCodes(Bytes chain, unsigned codeSize, Places* places) {
    const unsigned clearCode = 1u << codeSize;
    File file;
    file.OpenMemory(chain.data(), chain.size());
    CodeStream stream(file, Manner::kWhole);
    CodeStream::Bits in;
    StringLengths strings(codeSize);
    for (unsigned code; TakeCode(stream, &in, strings.Width(), &code) && code != clearCode + 1;) {
        if (!strings.IsPossible(code)) return;
        const unsigned width = strings.Width();
        if (code == clearCode)
            strings.Clear(codeSize);
        else
            places->Put(width, strings.Take(code));
    }
}

// `coded`: minimum code size, sub-blocks, terminator.
void Follow(Bytes coded, bool interlaced, PixelCosts* costs) {
    const int codeSize = coded.empty() ? 0 : coded[0];
    if (codeSize >= kLeastWholeCodeSize && codeSize <= kMostWholeCodeSize) {
        Places places(costs, interlaced);
        FollowCodes(coded.subspan(1), static_cast<unsigned>(codeSize), &places);
    }
    costs->otherBits = 8 * uint64_t{coded.size()} - costs->pixelBits;
}

// What of an image's bytes is its data.
Bytes CodedPart(Bytes own) {
    if (own.size() < kImageHeadBytes) return {};
    return own.subspan(std::min(own.size(), kImageHeadBytes + TableBytesOfPacked(own[kImageHeadBytes - 1])));
}

}  // namespace

bool MeasurePixelCosts(const Block& image, PixelCosts* costs) {
    const ImageFields fields = GetImageFields(image);
    const bool interlaced = (fields.packed & kImageInterlaced) != 0;
    *costs = {};
    costs->width = fields.width;
    costs->height = fields.height;
    costs->bits = AllocateScratchArray<float>(uint64_t{fields.width} * fields.height);
    if (!costs->bits) return false;
    if (HasSource(image)) {
        SourceLock source(image);
        if (source) Follow(CodedPart(source.Own()), interlaced, costs);
        return static_cast<bool>(source);
    }
    File encoded;
    if (!encoded.CreateMemory() || !EncodeImageData(encoded, image, Manner::kWhole)) return false;
    Follow(encoded.Written(), interlaced, costs);
    return true;
}

double HeatOfBits(double bits) {
    return std::sqrt(std::clamp(bits / kMostBitsOfPixel, 0.0, 1.0));
}
