#include "imaging/shared_palette.h"

#include <algorithm>
#include <cstring>

#include "imaging/colour_index.h"
#include "imaging/median_cut.h"
#include "imaging/pixel_rows.h"
#include "imaging/row_packer.h"

namespace {

// The distinct colours in order of first appearance, until there are more than wanted.
class ExactColours {
public:
    // cppcheck-suppress uninitMemberVar ; the first count_ colours are there
    explicit ExactColours(int wanted) : wanted_(wanted) {}

    bool Overflowed() const { return count_ < 0; }
    int Count() const { return count_; }
    const RgbTriple* Colours() const { return colours_; }

    void Add(uint8_t red, uint8_t green, uint8_t blue) {
        if (Overflowed()) return;
        uint32_t colour = PackColour(red, green, blue);
        if (count_ == wanted_) {
            if (index_.Find(colour) == ColourIndex::kMissing) count_ = -1;
        } else if (index_.Add(colour, count_)) {
            colours_[count_++] = {red, green, blue};
        }
    }

private:
    int wanted_;
    int count_ = 0;
    ColourIndex index_;
    RgbTriples colours_;
};

class Scan {
public:
    Scan(ColourHistogram* histogram, int wanted) : cells_(histogram->cells), exact_(wanted) {}

    const ExactColours& Exact() const { return exact_; }
    int64_t Pixels() const { return pixels_; }

    // Counts the pixels of an image; false when memory ran out.
    bool AddImage(const MemoryHandle& image) {
        ImageLock bitmap(image);
        if (!bitmap) return false;
        pixels_ += int64_t{bitmap->width} * bitmap->height;
        if (bitmap->bitCount <= 8) return AddIndexes(bitmap);
        for (int y = bitmap->height - 1; y >= 0; --y) AddTrueColours(ImageRow(bitmap, y), bitmap->width);
        return true;
    }

private:
    void AddTrueColours(const uint8_t* bgr, int width) {
        for (int x = 0; x < width; ++x, bgr += 3) {
            exact_.Add(bgr[2], bgr[1], bgr[0]);
            ++cells_[HistogramCell(bgr[2], bgr[1], bgr[0])].count;
        }
    }

    // An index is looked up when it first appears; the cells are given the pixels of all indexes in the end.
    bool AddIndexes(ConstLockedBitmap bitmap) {
        int width = bitmap->width;
        std::unique_ptr<uint8_t[]> indexes = AllocateScratch(static_cast<uint32_t>(width));
        if (!indexes) return false;
        const TrueColours colours = GetTrueColours(bitmap);
        uint32_t counts[kPaletteEntries] = {};
        for (int y = bitmap->height - 1; y >= 0; --y) {
            UnpackRow(indexes.get(), ImageRow(bitmap, y), width, bitmap->bitCount);
            for (int x = 0; x < width; ++x) {
                uint8_t index = indexes.get()[x];
                RgbQuad colour = colours.of[index];
                if (counts[index]++ == 0) exact_.Add(colour.red, colour.green, colour.blue);
            }
        }
        for (int i = 0; i < kPaletteEntries; ++i) {
            RgbQuad colour = colours.of[i];
            cells_[HistogramCell(colour.red, colour.green, colour.blue)].count += counts[i];
        }
        return true;
    }

    ColourCell* cells_;
    ExactColours exact_;
    int64_t pixels_ = 0;
};

}  // namespace

Result<SharedPalette> BuildSharedPalette(int wanted, std::span<const MemoryHandle> images) {
    int most = std::clamp(wanted, 0, kPaletteEntries);
    auto histogram = AllocateScratchObject<ColourHistogram>();
    if (!histogram) return Failure::kNoMemory;
    NumberCells(histogram.get());

    Scan scan(histogram.get(), most);
    for (const MemoryHandle& image : images)
        if (!scan.AddImage(image)) return Failure::kNoMemory;

    SharedPalette palette;
    const ExactColours& exact = scan.Exact();
    if (!exact.Overflowed()) {
        palette.count = exact.Count();
        memcpy(palette.colours, exact.Colours(), sizeof(RgbTriple) * static_cast<size_t>(exact.Count()));
    } else if (most > 0) {
        palette.count = MedianCut(histogram.get(), scan.Pixels(), most, palette.colours);
    }
    return palette;
}
