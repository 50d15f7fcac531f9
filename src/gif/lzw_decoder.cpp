#include "gif/lzw_decoder.h"

#include "gif/chained_decoder.h"
#include "gif/descriptor.h"
#include "gif/interlace.h"
#include "gif/linear_decoder.h"
#include "imaging/row_packer.h"

namespace {

// Above this the linear decoder's copy of the image costs more than its speed is worth.
constexpr uint64_t kMostLinearPixels = 64 << 20;

struct Target {
    LockedBitmap bitmap;
    int width, height;
    bool interlaced;
};

// Puts the whole rows among the first `count` pixels in their places.
void StoreRows(const Target& target, const uint8_t* pixels, uint64_t count) {
    RowWalk walk(target.height, target.interlaced);
    auto width = static_cast<uint64_t>(target.width);
    for (uint64_t done = width; done <= count; done += width, pixels += width, walk.Advance())
        if (walk.Row() < target.height)
            PackRow(ImageRow(target.bitmap, walk.Row()), pixels, target.width, target.bitmap->bitCount);
}

// Decodes an image whose data holds no more pixels than it has room for. False, with the bitmap untouched, when the
// image is none of these or memory is short.
bool DecodeLinear(File& file, int codeSize, const Target& target, DecodeResult* result) {
    uint64_t room = static_cast<uint64_t>(target.width) * static_cast<uint64_t>(target.height);
    if (room == 0 || room > kMostLinearPixels) return false;
    LinearDecoder decoder;
    if (!decoder.Prepare(room)) return false;
    LinearDecoder::Outcome outcome = decoder.Decode(file, codeSize);
    if (outcome == LinearDecoder::kSurplus) return false;
    StoreRows(target, decoder.Pixels(), decoder.Count());
    *result = outcome == LinearDecoder::kCorrupt ? kDecodeCorrupt : kDecodeDone;
    return true;
}

// Decodes anything, row by row.
DecodeResult DecodeChained(File& file, int codeSize, const Target& target) {
    ChainedDecoder decoder;
    if (!decoder.Prepare(target.width)) return kDecodeNoMemory;
    RowWalk walk(target.height, target.interlaced);
    bool intact = decoder.Decode(file, codeSize, [&](const uint8_t* row) {
        if (walk.Row() < target.height)
            PackRow(ImageRow(target.bitmap, walk.Row()), row, target.width, target.bitmap->bitCount);
        walk.Advance();
    });
    return intact ? kDecodeDone : kDecodeCorrupt;
}

}  // namespace

DecodeResult DecodeImageData(File& file, int codeSize, Block* image) {
    if (codeSize < kLeastCodeSize || codeSize > kMostCodeSize) return kDecodeBadCodeSize;
    ImageWriteLock bitmap(&image->data);
    if (!bitmap) return kDecodeCorrupt;
    bool interlaced = (GetImageFields(*image).packed & kImageInterlaced) != 0;
    Target target = {bitmap, bitmap->width, bitmap->height, interlaced};

    uint64_t start = file.Position();
    DecodeResult result;
    if (DecodeLinear(file, codeSize, target, &result)) return result;
    file.Seek(start);
    return DecodeChained(file, codeSize, target);
}
