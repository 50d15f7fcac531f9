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
    bool AddImage(MemoryHandle image) {
        MemoryLock lock(image);
        if (!lock) return false;
        const auto* bitmap = lock.As<const BitmapHeader>();
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
        OwnedMemory indexes(AllocateMemory(static_cast<uint32_t>(width)));
        MemoryLock indexLock(indexes.Get());
        if (!indexLock) return false;
        const TrueColours colours = GetTrueColours(bitmap);
        uint32_t counts[kPaletteEntries] = {};
        for (int y = bitmap->height - 1; y >= 0; --y) {
            UnpackRow(indexLock.Bytes(), ImageRow(bitmap, y), width, bitmap->bitCount);
            for (int x = 0; x < width; ++x) {
                uint8_t index = indexLock.Bytes()[x];
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

int BuildSharedPalette(int* wanted, RgbTriple* palette, const BlockList& list) {
    memset(palette, 0, kPaletteBytes);
    int most = std::clamp(*wanted, 0, kPaletteEntries);
    OwnedMemory memory(AllocateMemory(sizeof(ColourHistogram)));
    MemoryLock lock(memory.Get());
    if (!lock) return kSharedPaletteNoMemory;
    auto* histogram = lock.As<ColourHistogram>();
    NumberCells(histogram);

    Scan scan(histogram, most);
    auto addImage = [&](const Block& block, uint32_t) {
        return block.kind != kImageBlock || !block.data || scan.AddImage(block.data);
    };
    if (!ForEachBlock(list, addImage)) return kSharedPaletteNoMemory;

    const ExactColours& exact = scan.Exact();
    if (!exact.Overflowed()) {
        *wanted = exact.Count();
        memcpy(palette, exact.Colours(), sizeof(RgbTriple) * static_cast<size_t>(exact.Count()));
    } else {
        *wanted = most > 0 ? MedianCut(histogram, scan.Pixels(), most, palette) : 0;
    }
    return kSharedPaletteDone;
}
