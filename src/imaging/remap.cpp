#include "imaging/remap.h"

#include "imaging/colour_index.h"
#include "imaging/inverse_colour_table.h"
#include "imaging/luminance.h"
#include "imaging/nearest_colour.h"
#include "imaging/pixel_rows.h"
#include "imaging/row_packer.h"

namespace {

struct TargetPalette {
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
struct RowMapper {
    void operator()(const uint8_t* row, int width, uint8_t* indexes) const {
        UnpackRow(indexes, row, width, bitCount);
        for (int x = 0; x < width; ++x) indexes[x] = to[indexes[x]];
    }

    int bitCount;
    uint8_t to[kPaletteEntries];
};

RowMapper MapOwnColours(ConstLockedBitmap source, const TargetPalette& target) {
    RowMapper map = {source->bitCount, {}};
    if (kQuirkOneBitIsBlackAndWhite && source->bitCount == 1) {
        map.to[0] = static_cast<uint8_t>(target.depth == 1 ? 0 : target.ExactOrCell(0));
        map.to[1] = static_cast<uint8_t>(target.depth == 1 ? 1 : target.ExactOrCell(255));
        return map;
    }
    const RgbQuad* colours = ImageColourTable(source);
    for (int i = 0; i < 1 << source->bitCount; ++i) {
        RgbQuad from = colours[i];
        map.to[i] = target.depth == 1 ? IsLight(from.red, from.green, from.blue) : target.Nearest(from);
    }
    return map;
}

// What becomes of a true colour: its exact match, or what is nearest to the colour of its cell. For a few colours this
// takes less time than filling the table of all cells.
int MapTrueColour(RgbQuad colour, const RgbTriple* palette, int depth) {
    int red = colour.red, green = colour.green, blue = colour.blue;
    if (depth == 1) return IsLight(red, green, blue);
    int exact = ExactColour(red, green, blue, palette, depth);
    return exact >= 0 ? exact : NearestColour(red & 0xF8, green & 0xF8, blue & 0xF8, palette, kQuirkSearchedEntries);
}

RowMapper MapTrueColours(ConstLockedBitmap source, const RgbTriple* palette, int depth) {
    RowMapper map = {source->bitCount, {}};
    const TrueColours colours = GetTrueColours(source);
    for (int i = 0; i < 1 << source->bitCount; ++i)
        map.to[i] = static_cast<uint8_t>(MapTrueColour(colours.of[i], palette, depth));
    return map;
}

// True colours that are in the palette keep their colour; all others are rounded to their cell first.
class TrueColourMap {
public:
    explicit TrueColourMap(const TargetPalette& target) : target_(target) {
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
    const TargetPalette& target_;
    ColourIndex exact_;
};

void MapToBlackAndWhite(const uint8_t* row, int width, uint8_t* indexes) {
    for (int x = 0; x < width; ++x, row += 3) indexes[x] = IsLight(row[2], row[1], row[0]);
}

// Makes the result from rows that `map` turns into one byte a pixel. The stored rows come in their order.
template <typename Map>
Result<MemoryHandle> MakeResult(ConstLockedBitmap source, const RgbTriple* palette, int depth, StopQuestion* stop,
                                const Map& map) {
    MemoryHandle result = CreateImageBitmap(source->width, source->height, palette, depth);
    std::unique_ptr<uint8_t[]> indexes = AllocateScratch(static_cast<uint32_t>(source->width));
    ImageWriteLock to(&result);
    if (!to || !indexes) return Failure::kNoMemory;
    for (int y = source->height - 1; y >= 0; --y) {
        if (StopRequested(stop)) return Failure::kStopped;
        map(ImageRow(source, y), source->width, indexes.get());
        PackRow(ImageRow(to, y), indexes.get(), source->width, to->bitCount);
    }
    return result;
}

}  // namespace

Result<MemoryHandle> RemapImage(const MemoryHandle& source, const RgbTriple* palette, int depth, StopQuestion* stop) {
    ImageLock from(source);
    if (!from || depth < 1 || depth > 8) return Failure::kNoMemory;
    TargetPalette target;
    target.palette = palette;
    target.depth = depth;
    if (!target.nearest.Build(palette, stop)) return Failure::kStopped;
    if (from->bitCount <= 8) return MakeResult(from, palette, depth, stop, MapOwnColours(from, target));
    if (depth == 1) return MakeResult(from, palette, depth, stop, MapToBlackAndWhite);
    return MakeResult(from, palette, depth, stop, TrueColourMap(target));
}

Result<MemoryHandle> RemapTrueColours(const MemoryHandle& source, const RgbTriple* palette, int depth) {
    ImageLock from(source);
    if (!from || depth < 1 || depth > 8) return Failure::kNoMemory;
    if (from->bitCount > 8) return RemapImage(source, palette, depth);
    return MakeResult(from, palette, depth, nullptr, MapTrueColours(from, palette, depth));
}
