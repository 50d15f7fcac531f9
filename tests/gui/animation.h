// Documents made for playing.
#pragma once

#include "gif/block_list.h"
#include "gif/descriptor.h"
#include "tests/gui/picture.h"

struct ImageRequest {
    uint16_t left, top;
    int width, height;
    int depth = 8;
    bool interlaced = false;
    bool hasOwnPalette = false;
    int seed = 1;  // of the pixels and of an own palette
};

// A document built block by block.
class Animation {
public:
    Animation(uint16_t screenWidth, uint16_t screenHeight, bool hasPalette = true);
    ~Animation() { DestroyBlockList(&list_); }
    Animation(const Animation&) = delete;
    Animation& operator=(const Animation&) = delete;

    Animation& Control(uint32_t disposal, uint16_t delay, int transparentIndex = -1, bool userInput = false);
    Animation& Image(const ImageRequest& request);
    Animation& Loop(uint16_t iterations);
    Animation& Comment() { return Append({}, kCommentBlock); }
    Animation& PlainText(const char* text, const PlainTextFields& fields);

    BlockList* List() { return &list_; }
    Block At(uint32_t index) const;
    RgbTriple Colour(int index) const { return palette_[index]; }

private:
    Animation& Append(Block block, uint16_t kind);

    BlockList list_ = {};
    RgbTriples palette_ = {};
};

constexpr uint8_t kBackgroundIndex = 5;
