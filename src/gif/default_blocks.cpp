#include "gif/default_blocks.h"

#include <algorithm>
#include <cstring>

#include "gif/descriptor.h"
#include "imaging/standard_palette.h"
#include "platform/bytes.h"
#include "texts/string_ids.h"
#include "texts/strings.h"

PlainTextGrid defaultPlainTextGrid = {80, 25, 8, 16};

namespace {

constexpr uint16_t kNewScreenWidth = 640;
constexpr uint16_t kNewScreenHeight = 480;
constexpr uint16_t kNewDelay = 1;  // hundredths of a second

Block EmptyBlock(BlockList* list, BlockKind kind) {
    Block block;
    block.kind = kind;
    block.owner = list;
    return block;
}

bool GiveText(Block* block) {
    const char* text = LoadStr(IDS_NEW_TEXT);
    return SetBlockText(block, text, static_cast<uint32_t>(strlen(text)));
}

}  // namespace

Result<Block> MakeHeaderBlock(BlockList* list) {
    Block block = EmptyBlock(list, kHeaderBlock);
    memcpy(block.descriptor, kSignature, kSignatureBytes);
    RgbTriples colours;
    int depth = 0;
    StandardPalette(colours, &depth, kPaletteWeb);
    auto packed = static_cast<uint8_t>(kHasPalette | (std::clamp(depth, 1, 8) - 1));
    PutHeaderFields(&block, {kNewScreenWidth, kNewScreenHeight, packed, 0, 0});
    if (!block.palette.Set(colours)) return Failure::kNoMemory;
    return block;
}

Block MakeControlBlock(BlockList* list) {
    Block block = EmptyBlock(list, kControlBlock);
    block.descriptor[0] = kControlDescriptorBytes - 2;
    PutControlFields(&block, {0, kNewDelay, 0});
    return block;
}

Block MakeControlBlock(BlockList* list, int transparentIndex) {
    Block block = MakeControlBlock(list);
    SetTransparency(&block, transparentIndex);
    return block;
}

Result<Block> MakePlainTextBlock(BlockList* list) {
    Block block = EmptyBlock(list, kPlainTextBlock);
    int depth = FindGlobalPalette(*list).depth;
    auto brightest = static_cast<uint8_t>(depth ? (1 << depth) - 1 : 0);
    block.descriptor[0] = kPlainTextDescriptorBytes - 1;
    const PlainTextGrid& grid = defaultPlainTextGrid;
    PutPlainTextFields(&block, {0, 0, grid.width, grid.height, grid.cellWidth, grid.cellHeight, brightest, 0});
    if (!GiveText(&block)) return Failure::kNoMemory;
    return block;
}

Result<Block> MakeCommentBlock(BlockList* list) {
    Block block = EmptyBlock(list, kCommentBlock);
    if (!GiveText(&block)) return Failure::kNoMemory;
    PutWord(block.descriptor, block.dataLength);
    return block;
}

Block MakeLoopBlock(BlockList* list) {
    Block block = EmptyBlock(list, kLoopBlock);
    block.descriptor[0] = kApplicationDescriptorBytes - 1;
    memcpy(block.descriptor + kIdentifierOffset, kLoopApplication, kIdentifierBytes + kAuthenticationBytes);
    block.descriptor[12] = 3;
    block.descriptor[13] = 1;
    PutLoopIterations(&block, 0);
    return block;
}

Result<Block> MakeImageBlock(BlockList* list, const MemoryHandle& bitmap, int fileDepth) {
    Block block = EmptyBlock(list, kImageBlock);
    ImageLock image(bitmap);
    if (!image) return Failure::kNoMemory;
    RgbTriples colours = {};
    GetImagePalette(image, colours);
    if (!block.palette.Set(colours)) return Failure::kNoMemory;
    int depth = std::clamp(fileDepth > 0 ? fileDepth : int{image->bitCount}, 1, 8);
    PutImageFields(&block, {0, 0, static_cast<uint16_t>(image->width), static_cast<uint16_t>(image->height),
                            static_cast<uint8_t>(depth - 1)});
    block.data = bitmap;
    return block;
}

Result<Block> MakeBlock(BlockList* list, uint16_t kind) {
    switch (kind) {
        case kHeaderBlock: return MakeHeaderBlock(list);
        case kControlBlock: return MakeControlBlock(list);
        case kPlainTextBlock: return MakePlainTextBlock(list);
        case kCommentBlock: return MakeCommentBlock(list);
        case kLoopBlock: return MakeLoopBlock(list);
        default: return Failure::kNotAllowed;
    }
}

bool NewDocument(BlockList* list) {
    if (!CreateBlockList(list)) return false;
    Result<Block> header = MakeHeaderBlock(list);
    if (header && AppendBlock(list, *header)) return true;
    DestroyBlockList(list);
    return false;
}
