#include "editing/block_queries.h"

#include <algorithm>

#include "gif/descriptor.h"

namespace {

bool HasLocalPalette(const Block& image) {
    return (GetImageFields(image).packed & kHasPalette) != 0;
}

bool UsesGlobalPalette(const Block& block) {
    return block.kind == kImageBlock && !HasLocalPalette(block);
}

}  // namespace

bool ImagesUseGlobalPalette(const BlockList& list) {
    return std::ranges::any_of(list.All(), UsesGlobalPalette);
}

void CopyGlobalPaletteToImages(BlockList* list, const Palette& palette) {
    for (Block& block : list->All()) {
        if (!UsesGlobalPalette(block)) continue;
        ImageFields fields = GetImageFields(block);
        fields.packed |= kHasPalette;
        PutImageFields(&block, fields);
        block.palette = palette;
    }
}

bool HasColours(const Block& header) {
    const RgbTriple* colours = header.palette;
    return std::any_of(colours, colours + ColoursOfPacked(GetHeaderFields(header).packed),
                       [](RgbTriple colour) { return colour != RgbTriple{}; });
}

const Block* FindNextImage(const BlockList& list, uint32_t from) {
    for (uint32_t i = from; i < list.count; ++i)
        if (list.blocks[i].kind == kImageBlock) return &list.blocks[i];
    return nullptr;
}

const Block* FindPreviousImage(const BlockList& list, uint32_t index) {
    for (uint32_t i = std::min(index, list.count); i-- > 1;)
        if (list.blocks[i].kind == kImageBlock) return &list.blocks[i];
    return nullptr;
}

GlobalPalette GetGlobalPalette(const BlockList& list) {
    const Block* header = FindHeader(list);
    return header ? PaletteOfHeader(*header) : GlobalPalette();
}

bool BorrowPalette(Block* block) {
    const Block* image = FindNextImage(*block->owner, block->position);
    if (image && HasLocalPalette(*image)) {
        block->palette = image->palette;
        block->paletteBits = static_cast<uint16_t>(DepthOfPacked(GetImageFields(*image).packed));
        return true;
    }
    GlobalPalette global = GetGlobalPalette(*block->owner);
    if (global.depth == 0) return false;
    block->palette = global.colours;
    block->paletteBits = static_cast<uint16_t>(global.depth);
    return true;
}
