// What each pixel of an image costs: its share of the bits of the code that stands for it.
#pragma once

#include <cstdint>
#include <memory>

#include "gif/block.h"

// The costs of one image. They belong to this value alone, and nothing of the image is needed for reading them.
struct PixelCosts {
    int width = 0, height = 0;
    std::unique_ptr<float[]> bits;  // of each pixel, rows from the top with nothing between; 0 where data ends early

    uint64_t pixels = 0;     // of the image, that the data has
    uint64_t pixelBits = 0;  // of the codes that stand for them: the sum of `bits`, but for rounding
    // All other bits from the minimum code size to the terminator: those of clear and end codes and of pixels beyond
    // the image, what follows them, and the lengths of sub-blocks.
    uint64_t otherBits = 0;
    float least = 0, most = 0;  // of a pixel; both 0 without any

    const float* Row(int y) const { return bits.get() + static_cast<size_t>(y) * static_cast<size_t>(width); }
    double Mean() const { return pixels ? static_cast<double>(pixelBits) / static_cast<double>(pixels) : 0; }
};

// Measures the codes that the IMAGE `image` has in its file, or those that it would be written with when it was changed
// or made here. The bits of a code are spread evenly over those of its pixels that the image has room for. Of damaged
// data all counts that can be decoded. False when memory runs out, or the image can't be encoded.
[[nodiscard]] bool MeasurePixelCosts(const Block& image, PixelCosts* costs);

constexpr double kMostBitsOfPixel = 12;  // a code has no more

// Where so many bits stand on a scale from 0 to 1 (kMostBitsOfPixel). It rises as the square root does, so that cheap
// pixels can be told apart, too.
double HeatOfBits(double bits);
