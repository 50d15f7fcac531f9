#include "tests/support/literal_codec.h"

#include <algorithm>
#include <cstring>

#include "gif/descriptor.h"

namespace {

constexpr int kSteps[] = {8, 8, 4, 2, 0};
constexpr int kFirstRows[] = {0, 4, 2, 1, 0};

struct Rows {
    int height;
    bool interlaced;
    int row = 0, pass = 0;

    void Advance() {
        row += interlaced ? kSteps[pass] : 1;
        if (!interlaced || row < height) return;
        if (pass < 4) ++pass;
        row = kFirstRows[pass];
    }
};

class Decoder {
public:
    Decoder(const Bytes& chain, int codeSize, LockedBitmap bitmap, ImageFields fields)
        : chain_(chain),
          codeSize_(codeSize),
          bitmap_(bitmap),
          depth_(DepthOfPacked(fields.packed)),
          rows_{bitmap->height, (fields.packed & kImageInterlaced) != 0},
          values_(static_cast<size_t>(bitmap->width) + 1024),
          packed_(values_.size() * 4) {}

    DecodeResult Run() {
        const int clearCode = 1 << codeSize_;
        Clear();
        for (int k; (k = NextCode()) >= 0 && k != clearCode + 1;) {
            if (k > nextSlot_) return kDecodeCorrupt;
            if (k == clearCode) {
                Clear();
                continue;
            }
            int code = k;
            stack_.clear();
            if (code == nextSlot_) {
                if (oldCode_ < 0) return kDecodeCorrupt;
                stack_.push_back(firstPixel_);
                code = oldCode_;
            }
            for (; code >= clearCode; code = prefix_[code]) stack_.push_back(suffix_[code]);
            firstPixel_ = code;
            Emit(code);
            for (; !stack_.empty(); stack_.pop_back()) Emit(stack_.back());
            Learn();
            oldCode_ = k;
        }
        return kDecodeDone;
    }

private:
    void Clear() {
        nextSlot_ = (1 << codeSize_) + 2;
        currentSize_ = codeSize_ + 1;
        topSlot_ = 1 << currentSize_;
        oldCode_ = firstPixel_ = -1;
    }

    void Learn() {
        if (nextSlot_ >= 4096 || oldCode_ < 0) return;
        prefix_[nextSlot_] = oldCode_;
        suffix_[nextSlot_] = firstPixel_;
        if (++nextSlot_ >= topSlot_ && currentSize_ < 12) topSlot_ = 1 << ++currentSize_;
    }

    bool FetchByte() {
        if (++inBlock_ >= blockBytes_) {
            if (at_ >= chain_.size() || chain_[at_] == 0) return false;
            blockBytes_ = chain_[at_++];
            if (chain_.size() - at_ < blockBytes_) return false;
            memcpy(block_, chain_.data() + at_, blockBytes_);
            at_ += blockBytes_;
            inBlock_ = 0;
        }
        return true;
    }

    // The bits of the current byte that have been taken are shifted out of it. -1 when the data has run out.
    int NextCode() {
        if (bit_ == 8) {
            if (!FetchByte()) return -1;
            bit_ = 0;
        }
        int code = block_[inBlock_];
        int end = bit_ + currentSize_;
        if (end <= 8) {
            block_[inBlock_] = static_cast<uint8_t>(code >> currentSize_);
            bit_ = end;
        } else {
            if (!FetchByte()) return -1;
            code |= block_[inBlock_] << (8 - bit_);
            if (end > 16) {
                if (!FetchByte()) return -1;
                code |= block_[inBlock_] << (16 - bit_);
            }
            bit_ = end > 16 ? end - 16 : end - 8;
            block_[inBlock_] = static_cast<uint8_t>(block_[inBlock_] >> bit_);
        }
        return code & ((1 << currentSize_) - 1);
    }

    void Emit(int pixel) {
        if (bitmap_->width == 0) return;
        values_[count_] = static_cast<uint8_t>(pixel);
        if (++count_ < static_cast<size_t>(bitmap_->width)) return;
        count_ = 0;
        if (rows_.row < bitmap_->height) StoreRow();
        rows_.Advance();
    }

    void StoreRow() {
        std::fill(packed_.begin(), packed_.end(), uint8_t{0});
        for (size_t x = 0; x < static_cast<size_t>(bitmap_->width); ++x) {
            unsigned value = values_[x];
            size_t byte = depth_ == 1 ? x / 8 : depth_ <= 4 ? x / 2 : x;
            unsigned bits = depth_ == 1   ? (value ? 0x80u >> x % 8 : 0)
                            : depth_ <= 4 ? (value & 15) << (x % 2 ? 0 : 4)
                                          : value;
            packed_[byte] = static_cast<uint8_t>(packed_[byte] | bits);
        }
        memcpy(ImageRow(bitmap_, rows_.row), packed_.data(), ImageRowBytes(bitmap_));
    }

    const Bytes& chain_;
    int codeSize_;
    LockedBitmap bitmap_;
    int depth_;
    Rows rows_;
    Bytes values_, packed_;
    size_t count_ = 0;  // pixels in the row being collected

    int prefix_[4096] = {}, suffix_[4096] = {};
    std::vector<int> stack_;
    int nextSlot_ = 0, topSlot_ = 0, currentSize_ = 0, oldCode_ = -1, firstPixel_ = -1;

    size_t at_ = 0, inBlock_ = 0, blockBytes_ = 0;
    uint8_t block_[255] = {};
    int bit_ = 8;
};

class Encoder {
public:
    explicit Encoder(int depth) : initBits_(depth == 1 ? 2u : static_cast<unsigned>(depth)) {
        out_.push_back(static_cast<uint8_t>(initBits_));
        Reset();
        Output(clearCode_);
    }

    void Put(unsigned x) {
        if (!started_) {
            started_ = true;
            ent_ = x;
            return;
        }
        unsigned h = (x * 32 ^ ent_) % kSlots;
        for (unsigned s = 1; codes_[h]; s += 2, h = h >= kSlots ? h - kSlots : h) {
            if (prefixes_[h] == ent_ && characters_[h] == x) {
                ent_ = codes_[h];
                return;
            }
            h += s;
        }
        Output(ent_);
        unsigned before = freeEntry_;
        if (freeEntry_ <= 4095) {
            prefixes_[h] = ent_;
            characters_[h] = x;
            codes_[h] = freeEntry_++;
        }
        if (before == maxCode_ && nBits_ < 12) {
            ++nBits_;
            maxCode_ *= 2;
        } else if (before == maxCode_) {
            Output(clearCode_);
            Reset();
        }
        ent_ = x;
    }

    Bytes Finish() {
        if (started_) Output(ent_);
        Output(clearCode_ + 1);
        if (bitCount_ > 0) WriteBlock((bitCount_ + 7) / 8);
        out_.push_back(0);
        return out_;
    }

private:
    static constexpr unsigned kSlots = 5003;

    void Reset() {
        nBits_ = initBits_ + 1;
        clearCode_ = 1u << initBits_;
        freeEntry_ = clearCode_ + 2;
        maxCode_ = 1u << nBits_;
        std::fill(std::begin(codes_), std::end(codes_), 0u);
    }

    void WriteBlock(unsigned bytes) {
        out_.push_back(static_cast<uint8_t>(bytes));
        out_.insert(out_.end(), buffer_, buffer_ + bytes);
    }

    void Output(unsigned code) {
        unsigned i = bitCount_ / 8;
        unsigned o = bitCount_ % 8;
        if (i >= 251) {
            WriteBlock(i);
            buffer_[0] = buffer_[i];
            bitCount_ = o;
            i = 0;
        }
        unsigned v = o ? code << o | buffer_[i] : code;
        for (unsigned byte = 0; byte < (o ? 3u : 2u); ++byte) buffer_[i + byte] = static_cast<uint8_t>(v >> 8 * byte);
        bitCount_ += nBits_;
    }

    unsigned initBits_;
    unsigned nBits_ = 0, clearCode_ = 0, freeEntry_ = 0, maxCode_ = 0, bitCount_ = 0, ent_ = 0;
    bool started_ = false;
    unsigned prefixes_[kSlots] = {}, codes_[kSlots] = {}, characters_[kSlots] = {};
    uint8_t buffer_[259] = {};
    Bytes out_;
};

}  // namespace

DecodeResult DecodeLiterally(const Bytes& chain, int codeSize, const Block& image) {
    if (codeSize < 2 || codeSize > 8) return kDecodeBadCodeSize;
    MemoryLock lock(image.data);
    return Decoder(chain, codeSize, lock.As<BitmapHeader>(), GetImageFields(image)).Run();
}

Bytes EncodeLiterally(const Block& image) {
    MemoryLock lock(image.data);
    auto* bitmap = lock.As<const BitmapHeader>();
    ImageFields fields = GetImageFields(image);
    int depth = DepthOfPacked(fields.packed);
    Rows rows{bitmap->height, (fields.packed & kImageInterlaced) != 0};
    Encoder encoder(depth);
    for (int y = 0; y < bitmap->height; ++y, rows.Advance())
        for (int x = 0; x < bitmap->width; ++x) {
            uint32_t value = GetImagePixel(bitmap, x, rows.row);
            encoder.Put(value == kNoPixel ? 0 : value & ((1u << depth) - 1));
        }
    return encoder.Finish();
}
