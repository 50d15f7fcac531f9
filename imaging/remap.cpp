#include "imaging/remap.h"

#include "imaging/colour_index.h"
#include "imaging/inverse_colour_table.h"
#include "imaging/luminance.h"
#include "imaging/nearest_colour.h"
#include "imaging/row_packer.h"

namespace {

constexpr int kLightest = 129;  // the least luminance that becomes white in a result of two colours

uint8_t BlackOrWhite(int red, int green, int blue) {
    return Luminance(red, green, blue) >= kLightest;
}

struct Target {
    const RgbTriple* palette;
    int depth;
    InverseColourTable nearest;

    uint8_t Nearest(RgbQuad colour) const {
        return static_cast<uint8_t>(NearestColour(colour.red, colour.green, colour.blue, palette, 1 << depth));
    }

    int ExactOrCell(uint8_t grey) const {
        int exact = ExactColour(grey, grey, grey, palette, depth);
        return exact >= 0 ? exact : nearest.cells[InverseCell(grey, grey, grey)];
    }
};

// What becomes of each index of a source with a colour table.
class IndexMap {
public:
    IndexMap(ConstLockedBitmap source, const Target& target) : bitCount_(source->bitCount) {
        if (bitCount_ == 1) {
            map_[0] = static_cast<uint8_t>(target.depth == 1 ? 0 : target.ExactOrCell(0));
            map_[1] = static_cast<uint8_t>(target.depth == 1 ? 1 : target.ExactOrCell(255));
            return;
        }
        const RgbQuad* colours = ImageColourTable(source);
        for (int i = 0; i < 1 << bitCount_; ++i) {
            RgbQuad from = colours[i];
            map_[i] = target.depth == 1 ? BlackOrWhite(from.red, from.green, from.blue) : target.Nearest(from);
        }
    }

    void operator()(const uint8_t* row, int width, uint8_t* indexes) const {
        UnpackRow(indexes, row, width, bitCount_);
        for (int x = 0; x < width; ++x) indexes[x] = map_[indexes[x]];
    }

private:
    int bitCount_;
    uint8_t map_[kPaletteEntries];
};

// True colours that are in the palette keep their colour; all others are rounded to their cell first.
class TrueColourMap {
public:
    explicit TrueColourMap(const Target& target) : target_(target) {
        for (int i = 0; i < 1 << target.depth; ++i) {
            RgbTriple colour = target.palette[i];
            exact_.Add(PackColour(colour.red, colour.green, colour.blue), i);
        }
    }

    void operator()(const uint8_t* row, int width, uint8_t* indexes) const {
        for (int x = 0; x < width; ++x, row += 3) {
            int exact = exact_.Find(PackColour(row[2], row[1], row[0]));
            indexes[x] = exact != ColourIndex::kMissing ? static_cast<uint8_t>(exact)
                                                        : target_.nearest.cells[InverseCell(row[2], row[1], row[0])];
        }
    }

private:
    const Target& target_;
    ColourIndex exact_;
};

void MapToBlackAndWhite(const uint8_t* row, int width, uint8_t* indexes) {
    for (int x = 0; x < width; ++x, row += 3) indexes[x] = BlackOrWhite(row[2], row[1], row[0]);
}

// Makes the result from rows that `map` turns into one byte a pixel. The stored rows come in their order.
template <typename Map>
MemoryHandle MakeResult(ConstLockedBitmap source, const Target& target, unsigned flags, const Map& map) {
    OwnedMemory result(CreateImageBitmap(source->width, source->height, target.palette, target.depth));
    OwnedMemory indexes(AllocateMemory(static_cast<uint32_t>(source->width)));
    MemoryLock resultLock(result.Get()), indexLock(indexes.Get());
    if (!resultLock || !indexLock) return nullptr;
    auto* to = resultLock.As<BitmapHeader>();
    for (int y = source->height - 1; y >= 0; --y) {
        if (StopRequested(flags)) return nullptr;
        map(ImageRow(source, y), source->width, indexLock.Bytes());
        PackRow(ImageRow(to, y), indexLock.Bytes(), source->width, to->bitCount);
    }
    return result.Release();
}

}  // namespace

MemoryHandle RemapImage(MemoryHandle source, const RgbTriple* palette, int depth, unsigned flags) {
    abortStatus = 0;
    MemoryLock lock(source);
    if (!lock || depth < 1 || depth > 8) return nullptr;
    auto* from = lock.As<const BitmapHeader>();
    Target target;
    target.palette = palette;
    target.depth = depth;
    if (!target.nearest.Build(palette, flags)) return nullptr;
    if (from->bitCount <= 8) return MakeResult(from, target, flags, IndexMap(from, target));
    if (depth == 1) return MakeResult(from, target, flags, MapToBlackAndWhite);
    return MakeResult(from, target, flags, TrueColourMap(target));
}
