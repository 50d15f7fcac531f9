#include "gif/lzw_encoder.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "gif/code_writer.h"
#include "gif/descriptor.h"
#include "gif/encoder_dictionaries.h"
#include "gif/interlace.h"
#include "imaging/row_packer.h"

namespace {

// The rows of an image as pixel values, in the order in which they are encoded.
class RowSource {
public:
    RowSource(ConstLockedBitmap bitmap, bool interlaced, Manner manner, uint8_t* buffer)
        : bitmap_(bitmap), walk_(bitmap->height, interlaced, manner), buffer_(buffer) {}

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

// An image on its way into the file.
struct Job {
    RowSource rows;
    int width, height;
    unsigned mask;  // cuts pixel values to the image's depth
    unsigned codeSize;
    CodeWriter* writer;
    CodeWriter::Place out;

    void Put(unsigned code, unsigned bits) { writer->Put(&out, code, bits); }
};

// The state of the compression between two pixels.
struct Progress {
    unsigned prefix;     // the code of the string so far
    unsigned codeWidth;  // bits of a code
    unsigned nextCode;   // to be given next
    unsigned maxCode;    // 1 << codeWidth

    void Restart(unsigned codeSize) {
        codeWidth = codeSize + 1;
        maxCode = 1u << codeWidth;
        nextCode = (1u << codeSize) + 2;
    }
};

// Called when the codes of this width have run out: goes on with wider ones, or starts over when there are none.
template <typename Dictionary>
Progress Widen(Job* job, Progress at, Dictionary* dictionary) {
    if (at.codeWidth < kMostCodeBits) {
        ++at.codeWidth;
        at.maxCode <<= 1;
        return at;
    }
    unsigned clearCode = 1u << job->codeSize;
    job->Put(clearCode, at.codeWidth);
    dictionary->Reset(clearCode);
    at.Restart(job->codeSize);
    return at;
}

// Encodes `count` pixels behind what has been encoded so far.
template <typename Dictionary>
Progress EncodeRow(Job* job, Progress at, const uint8_t* pixels, int count, Dictionary* dictionary) {
    const unsigned mask = job->mask;
    CodeWriter* const writer = job->writer;
    CodeWriter::Place out = job->out;
    for (const uint8_t* end = pixels + count; pixels < end; ++pixels) {
        unsigned pixel = *pixels & mask;
        typename Dictionary::Slot slot;
        if (unsigned code = dictionary->Find(at.prefix, pixel, &slot)) {
            at.prefix = code;
            continue;
        }
        writer->Put(&out, at.prefix, at.codeWidth);
        bool lastOfWidth = at.nextCode == at.maxCode;
        if (!lastOfWidth || at.nextCode < kMostCodes) dictionary->Fill(slot, at.prefix, pixel, at.nextCode);
        ++at.nextCode;
        at.prefix = pixel;
        if (lastOfWidth) {
            job->out = out;
            at = Widen(job, at, dictionary);
            out = job->out;
        }
    }
    job->out = out;
    return at;
}

template <typename Dictionary>
bool EncodePixels(Job* job) {
    auto dictionary = AllocateScratchObject<Dictionary>();
    if (!dictionary) return false;
    const unsigned clearCode = 1u << job->codeSize;
    Progress at;
    at.Restart(job->codeSize);
    dictionary->Reset(clearCode);
    job->Put(clearCode, at.codeWidth);
    const uint8_t* row = job->rows.Next();
    at.prefix = row[0] & job->mask;
    at = EncodeRow(job, at, row + 1, job->width - 1, dictionary.get());
    for (int y = 1; y < job->height; ++y) at = EncodeRow(job, at, job->rows.Next(), job->width, dictionary.get());
    job->Put(at.prefix, at.codeWidth);
    job->Put(clearCode + 1, at.codeWidth);
    return true;
}

// An image without pixels still has its clear and its end code.
bool EncodeNothing(Job* job) {
    job->Put(1u << job->codeSize, job->codeSize + 1);
    job->Put((1u << job->codeSize) + 1, job->codeSize + 1);
    return true;
}

bool Encode(Job* job) {
    if (job->width == 0 || job->height == 0) return EncodeNothing(job);
    switch (job->codeSize) {
        case 2:
        case 3:
        case 4: return EncodePixels<RowDictionary<4>>(job);
        case 5: return EncodePixels<RowDictionary<5>>(job);
        case 6: return EncodePixels<RowDictionary<6>>(job);
        default: return EncodePixels<HashDictionary>(job);
    }
}

}  // namespace

int DepthOfPixels(ConstLockedBitmap bitmap) {
    unsigned all = 1;
    for (int y = 0; y < bitmap->height; ++y)
        for (int x = 0; x < bitmap->width; ++x) all |= IndexAt(ImageRow(bitmap, y), x, bitmap->bitCount);
    return static_cast<int>(std::bit_width(all));
}

bool EncodeImageData(File& file, const Block& image, Manner manner) {
    ImageLock bitmap(image.data);
    if (!bitmap) return false;
    ImageFields fields = GetImageFields(image);
    int depth = DepthOfPacked(fields.packed);
    // A true-colour bitmap has no indices to write, and a descriptor that tells another size would not fit the data.
    if (bitmap->bitCount > 8 || bitmap->width != fields.width || bitmap->height != fields.height) return false;

    std::unique_ptr<uint8_t[]> row = AllocateScratch(static_cast<uint64_t>(bitmap->width) + 1);
    if (manner == Manner::kWhole && depth < bitmap->bitCount) depth = std::max(depth, DepthOfPixels(bitmap));
    auto codeSize = static_cast<unsigned>(depth == 1 ? 2 : depth);
    CodeWriter writer;
    CodeWriter::Place out;
    if (!row || !writer.Start(&file, static_cast<int>(codeSize), &out)) return false;
    RowSource rows(bitmap, (fields.packed & kImageInterlaced) != 0, manner, row.get());
    Job job = {rows, bitmap->width, bitmap->height, (1u << depth) - 1, codeSize, &writer, out};
    return Encode(&job) && writer.Finish(job.out);
}
