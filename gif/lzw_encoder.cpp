#include "gif/lzw_encoder.h"

#include <cstring>

#include "gif/code_writer.h"
#include "gif/descriptor.h"
#include "gif/encoder_dictionary.h"
#include "gif/interlace.h"
#include "gif/row_packer.h"

namespace {

constexpr unsigned kMostCodes = 4096;
constexpr unsigned kMostCodeBits = 12;

// Everything that encoding one image needs.
struct Work {
    EncoderDictionary dictionary;
    CodeWriter writer;
};

// The state of the compression between two pixels.
struct Encoder {
    Work* work;
    unsigned clearCode;
    unsigned startWidth;
    unsigned width;    // bits of a code
    unsigned next;     // the code to be given next
    unsigned maxCode;  // 1 << width

    void ResetDictionary() {
        work->dictionary.Reset(clearCode);
        width = startWidth;
        maxCode = 1u << width;
        next = clearCode + 2;
    }

    void Clear() {
        work->writer.Put(clearCode, width);
        ResetDictionary();
    }

    // Ends the string `prefix`, which was not known with `pixel` behind it.
    void EndString(unsigned prefix, unsigned pixel) {
        work->writer.Put(prefix, width);
        unsigned code = next;
        if (code < kMostCodes) {
            work->dictionary.Add(prefix, pixel, code);
            ++next;
        }
        if (code != maxCode) return;
        if (width == kMostCodeBits) return Clear();
        ++width;
        maxCode <<= 1;
    }

    // Goes on from the string `prefix` over a row; returns the string at its end.
    unsigned EncodeRow(unsigned prefix, const uint8_t* pixels, int count, unsigned mask) {
        for (int x = 0; x < count; ++x) {
            unsigned pixel = pixels[x] & mask;
            unsigned code = work->dictionary.Find(prefix, pixel);
            if (code == EncoderDictionary::kNone) {
                EndString(prefix, pixel);
                code = pixel;
            }
            prefix = code;
        }
        return prefix;
    }
};

// The rows of an image as pixel values, in the order in which they are encoded.
class RowSource {
public:
    RowSource(ConstLockedBitmap bitmap, bool interlaced, uint8_t* buffer)
        : bitmap_(bitmap), walk_(bitmap->height, interlaced), buffer_(buffer) {}

    // The next row; one that the image does not have is all 0.
    const uint8_t* Next() {
        int y = walk_.Row();
        walk_.Advance();
        if (y >= bitmap_->height) {
            memset(buffer_, 0, static_cast<size_t>(bitmap_->width));
            return buffer_;
        }
        const uint8_t* row = ImageRow(bitmap_, y);
        if (bitmap_->bitCount == 8) return row;
        UnpackRow(buffer_, row, bitmap_->width, bitmap_->bitCount);
        return buffer_;
    }

private:
    ConstLockedBitmap bitmap_;
    RowWalk walk_;
    uint8_t* buffer_;
};

void EncodePixels(Encoder encoder, RowSource rows, int width, int height, unsigned mask) {
    encoder.work->dictionary.Clear();
    encoder.ResetDictionary();
    encoder.work->writer.Put(encoder.clearCode, encoder.width);
    if (width > 0 && height > 0) {
        const uint8_t* row = rows.Next();
        unsigned prefix = encoder.EncodeRow(row[0] & mask, row + 1, width - 1, mask);
        for (int y = 1; y < height; ++y) prefix = encoder.EncodeRow(prefix, rows.Next(), width, mask);
        encoder.work->writer.Put(prefix, encoder.width);
    }
    encoder.work->writer.Put(encoder.clearCode + 1, encoder.width);
}

}  // namespace

bool EncodeImageData(File& file, const Block& image) {
    MemoryLock lock(image.data);
    if (!lock) return false;
    auto* bitmap = lock.As<const BitmapHeader>();
    ImageFields fields = GetImageFields(image);
    int depth = DepthOfPacked(fields.packed);
    // A true-colour bitmap has no indices to write, and a descriptor that tells another size would not fit the data.
    if (bitmap->bitCount > 8 || bitmap->width != fields.width || bitmap->height != fields.height) return false;

    std::unique_ptr<uint8_t[]> row = AllocateScratch(static_cast<uint64_t>(bitmap->width) + 1);
    std::unique_ptr<Work> work = AllocateScratchObject<Work>();
    auto codeSize = static_cast<unsigned>(depth == 1 ? 2 : depth);
    if (!row || !work || !work->writer.Start(&file, static_cast<int>(codeSize))) return false;
    Encoder encoder = {work.get(), 1u << codeSize, codeSize + 1, 0, 0, 0};
    RowSource rows(bitmap, (fields.packed & kImageInterlaced) != 0, row.get());
    EncodePixels(encoder, rows, bitmap->width, bitmap->height, (1u << depth) - 1);
    return work->writer.Finish();
}
