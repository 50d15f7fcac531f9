#include "animation/paint_image.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "animation/animation.h"
#include "gif/descriptor.h"
#include "imaging/row_packer.h"

namespace {

struct PixelTable {
    uint32_t of[kPaletteEntries];
};

PixelTable TableOf(const RgbTriple* palette) {
    PixelTable table;
    for (int i = 0; i < kPaletteEntries; ++i) table.of[i] = PixelOf(palette[i]);
    return table;
}

constexpr int kGroup = sizeof(uint64_t);  // pixels painted at a time
constexpr uint64_t kEachOfGroup = 0x0101010101010101;

uint64_t GroupAt(const uint8_t* indices) {
    uint64_t group;
    memcpy(&group, indices, sizeof group);
    return group;
}

void PaintOpaque(uint32_t* to, const uint8_t* indices, int count, const PixelTable& table) {
    int done = 0;
    for (; done + kGroup <= count; done += kGroup) {
        // Drawings are made of runs.
        if (GroupAt(indices + done) == indices[done] * kEachOfGroup)
            std::fill_n(to + done, kGroup, table.of[indices[done]]);
        else
            for (int i = done; i < done + kGroup; ++i) to[i] = table.of[indices[i]];
    }
    for (; done < count; ++done) to[done] = table.of[indices[done]];
}

void PaintTransparent(uint32_t* to, const uint8_t* indices, int count, const PixelTable& table, uint8_t transparent) {
    const uint64_t transparentGroup = transparent * kEachOfGroup;
    for (int done = 0; done < count; done += kGroup) {
        // Most frames of a recording are mostly transparent.
        while (done + kGroup <= count && GroupAt(indices + done) == transparentGroup) done += kGroup;
        const int end = std::min(done + kGroup, count);
        for (int i = done; i < end; ++i) {
            uint32_t pixel = table.of[indices[i]];
            to[i] = indices[i] == transparent ? to[i] : pixel;
        }
    }
}

}  // namespace

uint32_t PixelOf(RgbTriple colour) {
    const uint8_t bytes[4] = {colour.red, colour.green, colour.blue, 0xFF};
    uint32_t pixel;
    memcpy(&pixel, bytes, sizeof pixel);
    return pixel;
}

bool PaintImage(const CanvasView& canvas, const Block& image, const RgbTriple* palette, int transparentIndex) {
    if (!image.data) return true;
    ImageLock bitmap(image.data);
    if (!bitmap) return false;
    const ImageFields fields = GetImageFields(image);
    const Rectangle place = {fields.left, fields.top, fields.left + bitmap->width, fields.top + bitmap->height};
    const Rectangle area = Common(place, {0, canvas.top, canvas.width, canvas.top + canvas.height});
    const int bitCount = bitmap->bitCount;
    if (area.IsEmpty() || bitCount > 8) return true;  // documents hold no true colour

    std::unique_ptr<uint8_t[]> unpacked;
    if (bitCount < 8 && !(unpacked = AllocateScratch(static_cast<uint64_t>(bitmap->width)))) return false;
    const PixelTable table = TableOf(palette);
    const int skipped = area.left - place.left;
    for (int y = area.top; y < area.bottom; ++y) {
        const uint8_t* row = ImageRow(bitmap, y - place.top);
        if (unpacked) UnpackRow(unpacked.get(), row, skipped + area.Width(), bitCount);
        const uint8_t* indices = (unpacked ? unpacked.get() : row) + skipped;
        uint32_t* to = canvas.Row(y) + area.left;
        if (transparentIndex == kNoTransparency)
            PaintOpaque(to, indices, area.Width(), table);
        else
            PaintTransparent(to, indices, area.Width(), table, static_cast<uint8_t>(transparentIndex));
    }
    return true;
}
