#include "imaging/shared_palette.h"

#include <algorithm>
#include <cstring>

#include "imaging/colour_index.h"
#include "imaging/median_cut.h"
#include "imaging/pixel_rows.h"

namespace {

// The distinct colours in order of first appearance, until there are more than wanted.
class ExactColours {
public:
    explicit ExactColours(int wanted) : wanted_(wanted) {}

    bool Overflowed() const { return count_ < 0; }
    int Count() const { return count_; }
    const RgbTriple* Colours() const { return colours_; }

    void Add(uint8_t red, uint8_t green, uint8_t blue) {
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
        auto* bitmap = lock.As<const BitmapHeader>();
        int width = bitmap->width;
        OwnedMemory expanded(AllocateMemory(static_cast<uint32_t>(width) * 3));
        MemoryLock expandedLock(expanded.Get());
        if (!expandedLock) return false;
        TrueColours colours;
        GetTrueColours(bitmap, &colours);
        for (int y = bitmap->height - 1; y >= 0; --y) {
            ExpandRow(ImageRow(bitmap, y), width, bitmap->bitCount, colours, expandedLock.Bytes());
            AddRow(expandedLock.Bytes(), width);
        }
        pixels_ += int64_t{width} * bitmap->height;
        return true;
    }

private:
    void AddRow(const uint8_t* bgr, int width) {
        for (int x = 0; x < width; ++x, bgr += 3) {
            if (!exact_.Overflowed()) exact_.Add(bgr[2], bgr[1], bgr[0]);
            ++cells_[HistogramCell(bgr[2], bgr[1], bgr[0])].count;
        }
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
