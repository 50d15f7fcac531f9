// What work on a document asks of whoever started it. Each face has its own answers and passes them down.
#pragma once

#include <string>

#include "gif/block.h"
#include "imaging/stop.h"
#include "platform/result.h"

enum class PaletteChoice {
    kCancel,      // leave the image out
    kRemap,       // each pixel in the nearest colour of the document
    kDither,      // in mixtures of them
    kKeepPixels,  // leave the pixels as they are, to be shown in whatever colours the document has
};

class Questions : public StopQuestion {
public:
    // Whether to stop work that goes on for long.
    bool StopRequested() override { return false; }

    // Whether StopRequested may ever say so. Where it never does, work is done in several threads.
    virtual bool MayStop() const { return true; }

    // What to do with an image whose colours are not the document's. `image.owner` is the document.
    virtual PaletteChoice ChoosePalette(const Block& image) = 0;

    // Whether images keep their own colours in any case; ChoosePalette is not asked then.
    virtual bool KeepsColours() { return false; }

    // Whether to go on without a file of a series that gave no image, and why it gave none.
    virtual bool MayLeaveOut(const std::string& path, Failure why) = 0;

    // Told before each of `count` files is read, counted from 1.
    virtual void OnFile(size_t /*number*/, size_t /*count*/) {}
};
