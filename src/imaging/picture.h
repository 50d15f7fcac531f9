// Pictures as files of other kinds than GIF hold them: with any number of colours, and more or less transparent.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "platform/result.h"

// A picture may be as large as an image of a GIF file, and have as many pixels as a canvas that is composed.
constexpr uint32_t kMostPictureSide = 65535;
constexpr uint64_t kMostPicturePixels = uint64_t{1} << 28;

// Red, green, blue and opacity (0 to 255, not multiplied into the colours), as they lie in memory.
struct Rgba {
    uint8_t red, green, blue, opacity;
};
static_assert(sizeof(Rgba) == 4, "four bytes a pixel, nothing between");

struct Picture {
    static constexpr int kMostColours = 256;

    int width = 0, height = 0;
    // Rows from the top without padding: the number of its colour as a byte for each pixel, or an Rgba without colours.
    std::unique_ptr<uint8_t[]> pixels;
    int colourCount = 0;              // 0: every pixel brings its own
    Rgba colours[kMostColours] = {};  // of which pixels may name also those behind the last: opaque black

    bool IsIndexed() const { return colourCount > 0; }
    size_t PixelBytes() const { return IsIndexed() ? 1 : sizeof(Rgba); }
    size_t RowBytes() const { return static_cast<size_t>(width) * PixelBytes(); }
    uint8_t* Row(int y) const { return &pixels[static_cast<size_t>(y) * RowBytes()]; }
};

// Whether a picture may have this size: kTooLarge for more than the above, kDamaged for no pixels at all.
[[nodiscard]] Failure CheckSize(uint64_t width, uint64_t height);

// Gives `picture`, whose `colourCount` is set, its size and room for its pixels, whose content is undefined. Fails as
// CheckSize does, and with kNoMemory.
[[nodiscard]] Failure MakeRoom(Picture* picture, uint64_t width, uint64_t height);

// Gives the picture `count` colours (1 to 256), all of them opaque black for now.
void GiveColours(Picture* picture, int count);

// Puts upright a picture that was stored in one of the eight ways that EXIF numbers (kUpright to 8; any other number
// counts as upright). False, with the picture as it was, when memory runs out.
constexpr int kUpright = 1;
[[nodiscard]] bool PutUpright(Picture* picture, int orientation);
