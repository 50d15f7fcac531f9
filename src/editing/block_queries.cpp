#include "editing/block_queries.h"

#include <algorithm>

#include "gif/descriptor.h"
#include "gif/source_bytes.h"

namespace {

constexpr size_t kLabelBytes = 2;  // the introducer before it, too

bool HasLocalPalette(const Block& image) {
    return (GetImageFields(image).packed & kHasPalette) != 0;
}

bool UsesGlobalPalette(const Block& block) {
    return block.kind == kImageBlock && !HasLocalPalette(block);
}

bool CanBeEncoded(const Block& image) {
    return image.data || !HasSource(image);
}

// How many bytes the reader would keep for one of a text.
size_t KeptBytes(uint8_t byte, bool isComment) {
    if (!isComment || byte >= ' ') return 1;
    return byte == '\r' ? 2 : 0;
}

// The same for all of a chain of sub-blocks.
size_t KeptBytes(std::span<const uint8_t> chain, bool isComment) {
    size_t kept = 0;
    while (!chain.empty() && chain[0] != 0) {
        auto part = chain.subspan(1, std::min<size_t>(chain[0], chain.size() - 1));
        for (uint8_t byte : part) kept += KeptBytes(byte, isComment);
        chain = chain.subspan(1 + part.size());
    }
    return kept;
}

}  // namespace

bool ImagesUseGlobalPalette(const BlockList& list) {
    return std::ranges::any_of(list.All(), UsesGlobalPalette);
}

bool ImagesAreBoundToGlobalPalette(const BlockList& list) {
    return std::ranges::any_of(list.All(),
                               [](const Block& block) { return UsesGlobalPalette(block) && !CanBeEncoded(block); });
}

void CopyGlobalPaletteToImages(BlockList* list, const Palette& palette) {
    for (Block& block : list->All()) {
        if (!UsesGlobalPalette(block) || !CanBeEncoded(block) || !MarkChanged(&block)) continue;
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

bool IsTextCut(const Block& block) {
    if (!HasSource(block) || block.dataLength < kMaxTextBytes) return false;
    SourceLock source(block);
    if (!source) return true;  // rather than lose what can't be seen now
    std::span<const uint8_t> bytes = source.Own();
    size_t before = kLabelBytes;
    if (block.kind == kPlainTextBlock && bytes.size() > before) before += 1 + size_t{bytes[before]};
    return KeptBytes(bytes.subspan(std::min(before, bytes.size())), block.kind == kCommentBlock) > kMaxTextBytes;
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
