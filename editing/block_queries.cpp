#include "editing/block_queries.h"

#include <algorithm>
#include <cstring>

#include "gif/descriptor.h"

namespace {

bool HasLocalPalette(const Block& image) {
    return (GetImageFields(image).packed & kHasPalette) != 0;
}

void SetLocalPalette(Block* image, const RgbTriple* palette) {
    ImageFields fields = GetImageFields(*image);
    fields.packed |= kHasPalette;
    PutImageFields(image, fields);
    memcpy(image->palette, palette, kPaletteBytes);
}

}  // namespace

bool GetHeader(const BlockList& list, Block* header) {
    int index = FindHeader(list);
    return index >= 0 && GetBlock(list, header, static_cast<uint32_t>(index));
}

bool ImagesUseGlobalPalette(const BlockList& list) {
    bool found = false;
    ForEachBlock(list, [&](const Block& block, uint32_t) {
        found = block.kind == kImageBlock && !HasLocalPalette(block);
        return !found;
    });
    return found;
}

bool CopyGlobalPaletteToImages(BlockList* list, const RgbTriple* palette) {
    return ForEachBlock(*list, [palette](Block& block, uint32_t) {
        if (block.kind == kImageBlock && !HasLocalPalette(block)) SetLocalPalette(&block, palette);
        return true;
    });
}

bool HasColours(const Block& header) {
    return std::any_of(header.palette, header.palette + ColoursOfPacked(GetHeaderFields(header).packed),
                       [](RgbTriple colour) { return colour != RgbTriple{}; });
}

bool FindNextImage(const BlockList& list, uint32_t from, Block* image) {
    for (uint32_t i = from; GetBlock(list, image, i); ++i)
        if (image->kind == kImageBlock) return true;
    return false;
}

bool FindPreviousImage(const BlockList& list, uint32_t index, Block* image) {
    for (uint32_t i = index; i-- > 1;)
        if (GetBlock(list, image, i) && image->kind == kImageBlock) return true;
    return false;
}

int GetGlobalPalette(const BlockList& list, RgbTriple* palette) {
    Block header;
    if (!GetHeader(list, &header)) return 0;
    uint8_t packed = GetHeaderFields(header).packed;
    if (!(packed & kHasPalette)) return 0;
    if (palette) memcpy(palette, header.palette, kPaletteBytes);
    return DepthOfPacked(packed);
}

bool BorrowPalette(Block* block) {
    Block image;
    if (FindNextImage(*block->owner, block->position, &image) && HasLocalPalette(image)) {
        memcpy(block->palette, image.palette, kPaletteBytes);
        block->paletteBits = static_cast<uint16_t>(DepthOfPacked(GetImageFields(image).packed));
        return true;
    }
    int depth = GetGlobalPalette(*block->owner, block->palette);
    if (depth == 0) return false;
    block->paletteBits = static_cast<uint16_t>(depth);
    return true;
}
