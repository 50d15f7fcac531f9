// Documents made for playing.
#pragma once

#include "tests/gui/picture.h"
#include "tests/support/test_blocks.h"

constexpr uint8_t kBackgroundIndex = 5;

struct ImageRequest {
    uint16_t left, top, width, height;
    int depth = 8;
    bool interlaced = false, hasOwnPalette = false;
    int seed = 1;  // of the pixels and of an own palette
};

// A document built block by block.
// Not called like the class of the program that is linked beside it.
class MadeAnimation {
public:
    MadeAnimation(uint16_t screenWidth, uint16_t screenHeight, bool hasPalette = true) {
        Block header = OfKind(kHeaderBlock);
        if (hasPalette) header.palette = ManyColours(0);
        auto packed = static_cast<uint8_t>(hasPalette ? kHasPalette | kSizeCode : 0);
        PutHeaderFields(&header, {screenWidth, screenHeight, packed, kBackgroundIndex, 0});
        Add(header);
    }

    MadeAnimation& Control(uint32_t disposal, uint16_t delay, int transparentIndex = -1, bool userInput = false) {
        Block block = OfKind(kControlBlock);
        const uint32_t flags = (transparentIndex < 0 ? 0u : kControlTransparent) | (userInput ? kControlUserInput : 0u);
        PutControlFields(&block, {static_cast<uint8_t>(disposal << kControlDisposalShift | flags), delay,
                                  static_cast<uint8_t>(transparentIndex)});
        return Add(block);
    }
    MadeAnimation& Image(const ImageRequest& image) {
        Block block = OfKind(kImageBlock);
        if (image.hasOwnPalette) block.palette = ManyColours(image.seed);
        auto packed = (image.hasOwnPalette ? kHasPalette : 0) | (image.interlaced ? kImageInterlaced : 0);
        packed |= image.depth - 1;
        PutImageFields(&block, {image.left, image.top, image.width, image.height, static_cast<uint8_t>(packed)});
        const uint32_t used = image.depth == 1 ? 2 : 16;
        block.data = MakeImage(
            image.width, image.height, image.depth, image.hasOwnPalette ? block.palette : At(0).palette,
            [&](int x, int y) { return static_cast<uint32_t>((x / 2 * 3 + y / 3 * 5) * image.seed + x * y) % used; });
        return Add(block);
    }
    MadeAnimation& Loop(uint16_t iterations) {
        Block block = OfKind(kLoopBlock);
        PutLoopIterations(&block, iterations);
        return Add(block);
    }
    MadeAnimation& Comment() { return Add(OfKind(kCommentBlock)); }
    MadeAnimation& PlainText(const char* text, const PlainTextFields& fields) {
        Block block = MakeText(kPlainTextBlock, text);
        PutPlainTextFields(&block, fields);
        return Add(block);
    }

    BlockList* List() { return &list_; }
    Block At(uint32_t index) const { return BlockAt(list_, index); }
    RgbTriple Colour(int index) const { return At(0).palette[index]; }

private:
    MadeAnimation& Add(Block block) {
        block.position = static_cast<uint16_t>(list_.count);
        Append(&list_, block);
        return *this;
    }

    BlockList list_;
};

using Animation = MadeAnimation;
