#include "editing/animation_shared_palette.h"

#include <cstring>

#include "editing/animation_palette.h"
#include "gif/descriptor.h"
#include "imaging/luminance.h"
#include "imaging/palette_order.h"
#include "imaging/remap.h"
#include "imaging/shared_palette.h"

namespace {

// In a result of two colours every pixel becomes the first or the second by its luminance alone. Where that would
// exchange the two colours or make one of them, a depth of 2 keeps them: there each has its exact match.
int DepthOfSharedPalette(const RgbTriple* colours, int count) {
    int depth = DepthForColourCount(count);
    if (depth > 1 || count == 0) return depth;
    auto isLight = [](RgbTriple colour) { return IsLight(colour.red, colour.green, colour.blue); };
    bool told = !isLight(colours[0]) && (count == 1 || isLight(colours[1]));
    return told ? 1 : 2;
}

bool RemapBlock(const AnimationPalette& palette, Block* block) {
    MemoryHandle remapped = RemapTrueColours(block->data, palette.colours, palette.depth);
    if (!remapped) return false;
    FreeMemory(block->data);
    block->data = remapped;
    ImageFields fields = GetImageFields(*block);
    fields.packed = WithDepth(fields.packed, palette.depth);
    PutImageFields(block, fields);
    memset(block->palette, 0, kPaletteBytes);  // it has no colours of its own any more
    return true;
}

}  // namespace

BuildOutcome ShareOnePalette(BlockList* document) {
    AnimationPalette palette;
    int count = kPaletteEntries;
    if (BuildSharedPalette(&count, palette.colours, *document) != kSharedPaletteDone) return BuildOutcome::kOutOfMemory;
    SortPaletteByBrightness(palette.colours, count, true);
    palette.depth = DepthOfSharedPalette(palette.colours, count);
    if (!SetGlobalPalette(document, palette)) return BuildOutcome::kListFailed;
    bool remapped = ForEachBlock(
        *document, [&](Block& block, uint32_t) { return block.kind != kImageBlock || RemapBlock(palette, &block); });
    return remapped ? BuildOutcome::kDone : BuildOutcome::kOutOfMemory;
}
