#include "animation/canvas_zoom.h"

namespace {

constexpr int kMostZoomSamples = 4;  // in each direction, for one reduced pixel

uint32_t CheckAt(int x, int y, int check) {
    return (x / check + y / check) % 2 == 0 ? kLightCheck : kDarkCheck;
}

// Adds up colours as the screen has them.
struct Mean {
    uint32_t red = 0, green = 0, blue = 0, count = 0;

    void Add(uint32_t colour) {
        red += colour >> 16 & 0xFF;
        green += colour >> 8 & 0xFF;
        blue += colour & 0xFF;
        ++count;
    }
    uint32_t Colour() const {
        const uint32_t half = count / 2;
        return (red + half) / count << 16 | (green + half) / count << 8 | (blue + half) / count;
    }
};

// A pixel of a canvas as the screen has it; what is transparent shows `behind`.
uint32_t OnScreen(const uint32_t* pixel, uint32_t behind) {
    if (*pixel == kTransparent) return behind;
    const auto* bytes = reinterpret_cast<const uint8_t*>(pixel);
    return uint32_t{bytes[0]} << 16 | uint32_t{bytes[1]} << 8 | bytes[2];
}

uint32_t MeanOf(const CanvasView& canvas, const Rectangle& box, int step, uint32_t behind) {
    Mean mean;
    for (int y = box.top; y < box.bottom; y += step)
        for (int x = box.left; x < box.right; x += step) mean.Add(OnScreen(canvas.Row(y) + x, behind));
    return mean.Colour();
}

void DrawReduced(uint32_t* to, const CanvasView& canvas, int reduce, int y, int firstX, int endX, int check) {
    const int step = std::max(reduce / kMostZoomSamples, 1);
    const Rectangle all = {0, 0, canvas.width, canvas.height};
    for (int x = firstX; x < endX; ++x) {
        const Rectangle box = {x * reduce, y * reduce, x * reduce + reduce, y * reduce + reduce};
        *to++ = MeanOf(canvas, Common(box, all), step, CheckAt(x, y, check));
    }
}

void DrawEnlarged(uint32_t* to, const CanvasView& canvas, int enlarge, int y, int firstX, int endX, int check) {
    const uint32_t* row = canvas.Row(y / enlarge);
    for (int x = firstX; x < endX; ++x) *to++ = OnScreen(row + x / enlarge, CheckAt(x, y, check));
}

}  // namespace

Zoom ZoomToFit(int width, int height, int placeWidth, int placeHeight, int most) {
    width = std::max(width, 1), height = std::max(height, 1);
    placeWidth = std::max(placeWidth, 1), placeHeight = std::max(placeHeight, 1);
    const int enlarge = std::min({placeWidth / width, placeHeight / height, most});
    if (enlarge >= 1) return {enlarge, 1};
    return {1, std::max((width + placeWidth - 1) / placeWidth, (height + placeHeight - 1) / placeHeight)};
}

void DrawZoomed(const ScreenPicture& picture, const CanvasView& canvas, const Zoom& zoom, int left, int top,
                int check) {
    const int firstX = std::max(-left, 0), endX = std::min(ZoomedSize(canvas.width, zoom), picture.width - left);
    const int firstY = std::max(-top, 0), endY = std::min(ZoomedSize(canvas.height, zoom), picture.height - top);
    for (int y = firstY; y < endY && firstX < endX; ++y) {
        uint32_t* to = picture.Row(top + y) + left + firstX;
        if (zoom.reduce > 1)
            DrawReduced(to, canvas, zoom.reduce, y, firstX, endX, check);
        else
            DrawEnlarged(to, canvas, zoom.enlarge, y, firstX, endX, check);
    }
}
