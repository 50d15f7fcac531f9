#include "gif/lzw_decoder.h"

#include <algorithm>
#include <functional>
#include <numeric>

#include "gif/chained_decoder.h"
#include "gif/descriptor.h"
#include "gif/interlace.h"
#include "gif/linear_decoder.h"
#include "imaging/row_packer.h"

namespace {

// Above this the linear decoder's copy of the image costs more than its speed is worth.
constexpr uint64_t kMostLinearPixels = 64 << 20;

struct DecodeTarget {
    LockedBitmap bitmap;
    int width, height;
    bool interlaced;
    Manner manner;
    unsigned* values;  // of all pixels that were stored, or-ed; null where nobody asks

    RowWalk Walk() const { return {height, interlaced, manner}; }
    uint64_t Pixels() const { return static_cast<uint64_t>(width) * static_cast<uint64_t>(height); }
};

// Puts `count` pixels at the start of row `y`; a row beyond the image is dropped.
void StoreRow(const DecodeTarget& target, int y, const uint8_t* pixels, uint64_t count) {
    if (y >= target.height) return;
    PackRow(ImageRow(target.bitmap, y), pixels, static_cast<int>(count), target.bitmap->bitCount);
    if (target.values)
        *target.values = std::accumulate(pixels, pixels + count, *target.values, std::bit_or<unsigned>());
}

// Puts the first `count` pixels in their places: the whole rows among them and, in the whole manner, the rest.
void StoreRows(const DecodeTarget& target, const uint8_t* pixels, uint64_t count) {
    RowWalk walk = target.Walk();
    auto width = static_cast<uint64_t>(target.width);
    for (; count >= width; count -= width, pixels += width, walk.Advance()) StoreRow(target, walk.Row(), pixels, width);
    if (count && target.manner == Manner::kWhole) StoreRow(target, walk.Row(), pixels, count);
}

// Decodes an image whose data holds no more pixels than it has room for. False, with the bitmap untouched, when the
// image is none of these or memory is short.
bool DecodeLinear(File& file, int codeSize, const DecodeTarget& target, DecodeResult* result, uint64_t* pixels) {
    uint64_t room = target.Pixels();
    if (room == 0 || room > kMostLinearPixels || codeSize > kMostCodeSize) return false;
    LinearDecoder decoder;
    if (!decoder.Prepare(room)) return false;
    LinearDecoder::Outcome outcome = decoder.Decode(file, codeSize, target.manner);
    if (outcome == LinearDecoder::kSurplus) return false;
    *pixels = decoder.Count();
    StoreRows(target, decoder.Pixels(), decoder.Count());
    *result = outcome == LinearDecoder::kCorrupt ? kDecodeCorrupt : kDecodeDone;
    return true;
}

// Decodes anything, row by row.
DecodeResult DecodeChained(File& file, int codeSize, const DecodeTarget& target, uint64_t* pixels) {
    ChainedDecoder decoder;
    if (!decoder.Prepare(target.width)) return kDecodeNoMemory;
    RowWalk walk = target.Walk();
    auto width = static_cast<uint64_t>(target.width);
    uint64_t count = 0;
    bool intact = decoder.Decode(file, codeSize, target.manner, [&](const uint8_t* row) {
        StoreRow(target, walk.Row(), row, width);
        walk.Advance();
        count += width;
    });
    if (target.manner == Manner::kWhole) StoreRow(target, walk.Row(), decoder.Rest(), decoder.RestCount());
    *pixels = std::min(count + decoder.RestCount(), target.Pixels());
    return intact ? kDecodeDone : kDecodeCorrupt;
}

bool IsCodeSize(int codeSize, Manner manner) {
    if (manner == Manner::kWhole) return codeSize >= kLeastWholeCodeSize && codeSize <= kMostWholeCodeSize;
    return codeSize >= kLeastCodeSize && codeSize <= kMostCodeSize;
}

}  // namespace

DecodeResult DecodeImageData(File& file, int codeSize, Block* image, Manner manner, uint64_t* pixels,
                             unsigned* values) {
    uint64_t unwanted;
    if (!pixels) pixels = &unwanted;
    *pixels = 0;
    if (!IsCodeSize(codeSize, manner)) return kDecodeBadCodeSize;
    ImageWriteLock bitmap(&image->data);
    if (!bitmap) return manner == Manner::kWhole ? kDecodeNoMemory : kDecodeCorrupt;
    bool interlaced = (GetImageFields(*image).packed & kImageInterlaced) != 0;
    DecodeTarget target = {bitmap, bitmap->width, bitmap->height, interlaced, manner, nullptr};
    target.values = values;

    uint64_t start = file.Position();
    DecodeResult result;
    if (DecodeLinear(file, codeSize, target, &result, pixels)) return result;
    file.Seek(start);
    return DecodeChained(file, codeSize, target, pixels);
}
