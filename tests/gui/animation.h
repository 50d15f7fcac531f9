// Documents made for playing.
#pragma once

#include <gtest/gtest.h>

#include <cstring>

#include "gif/block_list.h"
#include "gif/descriptor.h"
#include "tests/gui/picture.h"

constexpr uint8_t kBackgroundIndex = 5;

struct ImageRequest {
    uint16_t left, top, width, height;
    int depth = 8;
    bool interlaced = false, hasOwnPalette = false;
    int seed = 1;  // of the pixels and of an own palette
};

// A document built block by block.
class Animation {
public:
    Animation(uint16_t screenWidth, uint16_t screenHeight, bool hasPalette = true) {
        EXPECT_TRUE(CreateBlockList(&list_));
        Block header = {};
        if (hasPalette) FillColours(header.palette, 0);
        auto packed = static_cast<uint8_t>(hasPalette ? kHasPalette | kSizeCode : 0);
        PutHeaderFields(&header, {screenWidth, screenHeight, packed, kBackgroundIndex, 0});
        Append(header, kHeaderBlock);
    }

    Animation& Control(uint32_t disposal, uint16_t delay, int transparentIndex = -1, bool userInput = false) {
        Block block = {};
        const uint32_t flags = (transparentIndex < 0 ? 0u : kControlTransparent) | (userInput ? kControlUserInput : 0u);
        PutControlFields(&block, {static_cast<uint8_t>(disposal << kControlDisposalShift | flags), delay,
                                  static_cast<uint8_t>(transparentIndex)});
        return Append(block, kControlBlock);
    }
    Animation& Image(const ImageRequest& image) {
        Block block = {};
        if (image.hasOwnPalette) FillColours(block.palette, image.seed);
        auto packed = (image.hasOwnPalette ? kHasPalette : 0) | (image.interlaced ? kImageInterlaced : 0);
        packed |= image.depth - 1;
        PutImageFields(&block, {image.left, image.top, image.width, image.height, static_cast<uint8_t>(packed)});
        const uint32_t used = image.depth == 1 ? 2 : 16;
        block.data = MakeImage(
            image.width, image.height, image.depth, image.hasOwnPalette ? block.palette : At(0).palette,
            [&](int x, int y) { return static_cast<uint32_t>((x / 2 * 3 + y / 3 * 5) * image.seed + x * y) % used; });
        return Append(block, kImageBlock);
    }
    Animation& Loop(uint16_t iterations) {
        Block block = {};
        PutLoopIterations(&block, iterations);
        return Append(block, kLoopBlock);
    }
    Animation& Comment() { return Append({}, kCommentBlock); }
    Animation& PlainText(const char* text, const PlainTextFields& fields) {
        Block block = {};
        PutPlainTextFields(&block, fields);
        EXPECT_TRUE(SetBlockText(&block, text, static_cast<uint32_t>(strlen(text))));
        return Append(block, kPlainTextBlock);
    }

    BlockList* List() { return &list_; }
    Block At(uint32_t index) const {
        Block block = {};
        EXPECT_TRUE(GetBlock(list_, &block, index));
        return block;
    }
    RgbTriple Colour(int index) const { return At(0).palette[index]; }

private:
    Animation& Append(Block block, uint16_t kind) {
        block.kind = kind;
        block.position = static_cast<uint16_t>(list_.count);
        EXPECT_TRUE(AppendBlock(&list_, &block));
        return *this;
    }

    OwnedBlockList list_;
};
