// Canvases as PNG files.
#pragma once

#include "animation/animation.h"
#include "animation/paint_image.h"
#include "imaging/colour_set.h"
#include "imaging/png_writer.h"

struct PngStyle {
    int level = kDefaultPngLevel;
    uint32_t background = kTransparent;  // what shows where a canvas is transparent
};

// Adds the picture of `area` of the canvas (not empty) to `out`: with a palette when 256 colours are enough, otherwise
// without opacity where all of it is opaque. False when memory runs out or the system can't write PNG.
[[nodiscard]] bool EncodeCanvas(const CanvasView& canvas, const struct Rectangle& area, const PngStyle& style,
                                ByteBuffer* out);

// The same in a form that does not depend on the picture: with the palette `colours`, which then has all of its colours
// (those of ColoursOfAnimation), or with all channels for null.
[[nodiscard]] bool EncodeCanvasAs(ColourSet* colours, const CanvasView& canvas, const struct Rectangle& area,
                                  const PngStyle& style, ByteBuffer* out);

// Adds every colour that the animation's canvases may have, and the background. False when these are more than 256.
bool ColoursOfAnimation(const Animation& animation, uint32_t background, ColourSet* colours);

// Adds the IMAGE `image`, which has at least one pixel, as it is: its own rectangle and the colours of `palette` in
// their order, `transparentIndex` (kNoTransparency: none) showing the background.
[[nodiscard]] bool EncodeImage(const Block& image, const RgbTriple* palette, int transparentIndex,
                               const PngStyle& style, ByteBuffer* out);

// Gives PNG rows of a canvas: a row of pixels at a time, in the form that was chosen.
class CanvasRows {
public:
    // `colours` as for EncodeCanvasAs. False when memory runs out or the system can't write PNG.
    [[nodiscard]] bool Start(uint32_t width, uint32_t height, ColourSet* colours, const PngStyle& style,
                             ByteBuffer* out);
    [[nodiscard]] bool Add(const uint32_t* pixels);
    [[nodiscard]] bool Finish() { return writer_.Finish(); }

private:
    PngWriter writer_;
    ColourSet* colours_ = nullptr;
    uint32_t background_ = kTransparent;
    uint32_t width_ = 0;
    std::unique_ptr<uint8_t[]> row_;
};
