#include "tests/gui/animation.h"

#include <cstring>

#include <gtest/gtest.h>

namespace {

void FillColours(RgbTriple* palette, int seed) {
    for (int i = 0; i < kPaletteEntries; ++i)
        palette[i] = {static_cast<uint8_t>(i * 53 + seed * 31), static_cast<uint8_t>(i * 29 + seed * 17),
                      static_cast<uint8_t>(200 - i * 7 + seed)};
}

}  // namespace

Animation::Animation(uint16_t screenWidth, uint16_t screenHeight, bool hasPalette) {
    EXPECT_TRUE(CreateBlockList(&list_));
    Block header = {};
    if (hasPalette) FillColours(palette_, 0);
    memcpy(header.palette, palette_, sizeof palette_);
    auto packed = static_cast<uint8_t>(hasPalette ? kHasPalette | kSizeCode : 0);
    PutHeaderFields(&header, {screenWidth, screenHeight, packed, kBackgroundIndex, 0});
    Append(header, kHeaderBlock);
}

Animation& Animation::Append(Block block, uint16_t kind) {
    block.kind = kind;
    block.position = static_cast<uint16_t>(list_.count);
    EXPECT_TRUE(AppendBlock(&list_, &block));
    return *this;
}

Animation& Animation::Control(uint32_t disposal, uint16_t delay, int transparentIndex, bool userInput) {
    Block block = {};
    uint32_t packed = disposal << kControlDisposalShift;
    if (transparentIndex >= 0) packed |= kControlTransparent;
    if (userInput) packed |= kControlUserInput;
    PutControlFields(&block, {static_cast<uint8_t>(packed), delay, static_cast<uint8_t>(transparentIndex)});
    return Append(block, kControlBlock);
}

Animation& Animation::Image(const ImageRequest& request) {
    Block block = {};
    if (request.hasOwnPalette) FillColours(block.palette, request.seed);
    auto packed = static_cast<uint8_t>(request.depth - 1);
    if (request.hasOwnPalette) packed |= kHasPalette;
    if (request.interlaced) packed |= kImageInterlaced;
    PutImageFields(&block, {request.left, request.top, static_cast<uint16_t>(request.width),
                            static_cast<uint16_t>(request.height), packed});
    block.data = MakeImage(request.width, request.height, request.depth,
                           request.hasOwnPalette ? block.palette : palette_, [&](int x, int y) {
                               auto mixed = static_cast<uint32_t>((x / 2 * 3 + y / 3 * 5) * request.seed + x * y);
                               return mixed % (1u << BitCountForDepth(request.depth)) % 16;
                           });
    return Append(block, kImageBlock);
}

Animation& Animation::Loop(uint16_t iterations) {
    Block block = {};
    PutLoopIterations(&block, iterations);
    return Append(block, kLoopBlock);
}

Animation& Animation::PlainText(const char* text, const PlainTextFields& fields) {
    Block block = {};
    PutPlainTextFields(&block, fields);
    EXPECT_TRUE(SetBlockText(&block, text, static_cast<uint32_t>(strlen(text))));
    return Append(block, kPlainTextBlock);
}

Block Animation::At(uint32_t index) const {
    Block block = {};
    EXPECT_TRUE(GetBlock(list_, &block, index));
    return block;
}
