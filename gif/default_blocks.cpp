#include "gif/default_blocks.h"

#include <algorithm>
#include <cstring>

#include "gif/descriptor.h"
#include "gif/first_image.h"
#include "gif/image_import.h"
#include "imaging/standard_palette.h"
#include "platform/bytes.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"

PlainTextGrid defaultPlainTextGrid = {80, 25, 8, 16};

namespace {

constexpr uint16_t kNewScreenWidth = 640;
constexpr uint16_t kNewScreenHeight = 480;
constexpr uint16_t kNewDelay = 1;  // hundredths of a second

bool FillHeader(Block* block) {
    memcpy(block->descriptor, kSignature, kSignatureBytes);
    int depth = 0;
    StandardPalette(block->palette, &depth, kPaletteWeb);
    auto sizeCode = static_cast<uint8_t>(std::clamp(depth, 1, 8) - 1);
    PutHeaderFields(block, {kNewScreenWidth, kNewScreenHeight, static_cast<uint8_t>(kHasPalette | sizeCode), 0, 0});
    return true;
}

bool FillControl(Block* block) {
    block->descriptor[0] = kControlDescriptorBytes - 2;
    PutControlFields(block, {0, kNewDelay, 0});
    return true;
}

bool TellOutOfMemory(WindowHandle owner) {
    ShowMessage(owner, LoadStr(IDS_OUT_OF_MEMORY));
    return false;
}

bool FillText(WindowHandle owner, Block* block) {
    const char* text = LoadStr(IDS_NEW_TEXT);
    return SetBlockText(block, text, static_cast<uint32_t>(strlen(text))) || TellOutOfMemory(owner);
}

bool FillPlainText(WindowHandle owner, const BlockList& list, Block* block) {
    int depth = FindGlobalPalette(list, nullptr);
    auto brightest = static_cast<uint8_t>(depth ? (1 << depth) - 1 : 0);
    block->descriptor[0] = kPlainTextDescriptorBytes - 1;
    const PlainTextGrid& grid = defaultPlainTextGrid;
    PutPlainTextFields(block, {0, 0, grid.width, grid.height, grid.cellWidth, grid.cellHeight, brightest, 0});
    return FillText(owner, block);
}

bool FillComment(WindowHandle owner, Block* block) {
    if (!FillText(owner, block)) return false;
    PutWord(block->descriptor, block->dataLength);
    return true;
}

bool FillLoop(Block* block) {
    block->descriptor[0] = kApplicationDescriptorBytes - 1;
    memcpy(block->descriptor + kIdentifierOffset, kLoopApplication, kIdentifierBytes + kAuthenticationBytes);
    block->descriptor[12] = 3;
    block->descriptor[13] = 1;
    PutLoopIterations(block, 0);
    return true;
}

bool NameAfterFile(WindowHandle owner, const char* path, Block* block) {
    const char* name = path;
    for (const char* at = path; *at; ++at)
        if (*at == '/' || *at == '\\' || *at == ':') name = at + 1;
    return SetBlockNameFromUtf8(name, block) || TellOutOfMemory(owner);
}

// Size, depth and palette of the block as the bitmap in `data` has them; a depth above 0 is the file's own.
bool DescribeBitmap(Block* block, int fileDepth) {
    int width, height, bitCount;
    if (!GetImageInfo(block->data, &width, &height, &bitCount, block->palette)) return false;
    int depth = std::clamp(fileDepth > 0 ? fileDepth : bitCount, 1, 8);
    PutImageFields(
        block, {0, 0, static_cast<uint16_t>(width), static_cast<uint16_t>(height), static_cast<uint8_t>(depth - 1)});
    return true;
}

bool FillImage(WindowHandle owner, BlockList* list, Block* block, MemoryHandle bitmap, const char* path) {
    int fileDepth = 0;
    block->data = bitmap ? bitmap : ReadFirstImage(owner, path, &fileDepth);
    if (!block->data || !DescribeBitmap(block, fileDepth)) return false;
    if (path && !NameAfterFile(owner, path, block)) return false;
    return bitmap || MatchImportedPalette(owner, list, block);
}

bool Fill(WindowHandle owner, BlockList* list, Block* block, MemoryHandle bitmap, const char* path) {
    switch (block->kind) {
        case kHeaderBlock: return FillHeader(block);
        case kImageBlock: return FillImage(owner, list, block, bitmap, path);
        case kControlBlock: return FillControl(block);
        case kPlainTextBlock: return FillPlainText(owner, *list, block);
        case kCommentBlock: return FillComment(owner, block);
        case kLoopBlock: return FillLoop(block);
        default: return false;
    }
}

}  // namespace

bool MakeDefaultBlock(WindowHandle owner, BlockList* list, Block* block, uint16_t kind, MemoryHandle bitmap,
                      const char* path) {
    *block = {};
    block->kind = kind;
    block->owner = list;
    if (Fill(owner, list, block, bitmap, path)) return true;
    if (kind != kImageBlock) FreeMemory(bitmap);
    FreeBlock(block);
    return false;
}

bool NewDocument(BlockList* list) {
    Block header;
    if (!MakeDefaultBlock(nullptr, list, &header, kHeaderBlock, nullptr, nullptr)) return false;
    if (!CreateBlockList(list)) return false;
    if (AppendBlock(list, &header) && RenumberBlocks(list)) return true;
    DestroyBlockList(list);
    return false;
}
