// Animated PNG files: our own chunks around the image data of PNG files that are there already.
#pragma once

#include <span>

#include "platform/file.h"

struct ApngFrame {
    uint32_t left = 0, top = 0, width = 0, height = 0;  // on the canvas
    uint16_t hundredths = 0;                            // how long it shows
};

// Writes one animation: Start, AddFrame for each frame, Finish. Each is false when the file can't be written or a frame
// is no PNG file.
class ApngWriter {
public:
    explicit ApngWriter(File& file) : file_(file) {}

    // `frames` will come, which are played `plays` times; 0 for ever.
    [[nodiscard]] bool Start(uint32_t frames, uint32_t plays);

    // `png` is the frame's picture as a file of its own. The first one is as large as the canvas and tells the form of
    // the pixels and the colours for all of them. A frame replaces what is under it, transparent pixels included, and
    // stays until the next one replaces it.
    [[nodiscard]] bool AddFrame(std::span<const uint8_t> png, const ApngFrame& frame);
    [[nodiscard]] bool Finish();

private:
    bool PutChunk(const char* type, std::span<const uint8_t> first, std::span<const uint8_t> rest = {});
    bool PutAnimationControl();
    bool PutFrameControl(const ApngFrame& frame);
    bool PutImageData(std::span<const uint8_t> data);

    File& file_;
    uint32_t frames_ = 0, plays_ = 0;
    uint32_t added_ = 0;
    uint32_t sequence_ = 0;  // of the chunks that only animations have
};
