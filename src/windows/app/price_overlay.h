// What the pixels of an image cost, laid over the frame that shows it.
#pragma once

#include <memory>
#include <string>

#include "animation/paint_image.h"

class PriceOverlay {
public:
    // Measures the pixels of `image` and lays their colours over a copy of `frame`. What has no pixels, or too many,
    // gets none; Words() says so. Takes as long as encoding the image.
    void Make(const CanvasView& frame, const Block& image);

    // Gives the memory back.
    void Forget();

    // The frame with the colours over it; without pixels when there are none.
    const CanvasView& Picture() const { return picture_; }
    bool HasPicture() const { return picture_.pixels != nullptr; }

    // What a pixel costs at least, at most and on average, in a line; empty before Make.
    const std::wstring& Words() const { return words_; }

private:
    std::unique_ptr<uint32_t[]> pixels_;
    CanvasView picture_ = {};
    std::wstring words_;
};
