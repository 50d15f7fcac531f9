// Documents made for playing, and a model of what the viewer has to show of them.
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
    Animation& Comment();
    Animation& PlainText(const char* text, const PlainTextFields& fields);

    BlockList* List() { return &list_; }
    Block At(uint32_t index) const;
    RgbTriple Colour(int index) const { return palette_[index]; }

private:
    Animation& Append(Block* block, uint16_t kind);

    BlockList list_ = {};
    RgbTriples palette_ = {};
};

constexpr uint8_t kBackgroundIndex = 5;

// What the client area has to show, block by block, by the rules for single pixels.
class ViewerModel {
public:
    ViewerModel(const Animation& animation, int clientWidth, int clientHeight);
    void Play(const Block& block);  // controls and images; others change nothing
    void Dispose();
    const Picture& Shown() const { return shown_; }

private:
    Picture shown_, under_;
    HeaderFields screen_;
    RgbTriples palette_;
    COLORREF background_;
    uint32_t disposal_ = 0;
    uint32_t transparentIndex_ = kNoPixel;
    RECT image_ = {};
};
