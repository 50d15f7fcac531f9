#include "windows/app/price_overlay.h"

#include <algorithm>
#include <cstdio>

#include "gif/descriptor.h"
#include "size/heat_map.h"
#include "size/pixel_costs.h"

namespace {

// Measuring more would be felt.
constexpr uint64_t kMostMeasuredPixels = uint64_t{1} << 22;

constexpr wchar_t kNoPrices[] = L"No pixels that cost bits";
constexpr wchar_t kTooManyPixels[] = L"Too many pixels for their prices";
constexpr wchar_t kNoMemory[] = L"Not enough memory for the prices";

std::wstring DescribeCosts(const PixelCosts& costs) {
    wchar_t text[100];
    swprintf(text, std::size(text), L"Bits of a pixel: %.2f to %.2f, mean %.2f", double{costs.least},
             double{costs.most}, costs.Mean());
    return text;
}

// The part of the image that lies on the canvas.
void DrawCosts(const CanvasView& canvas, const PixelCosts& costs, int left, int top) {
    const HeatMapColours colours = MakeHeatMapColours();
    for (int y = 0; y < std::min(costs.height, canvas.height - top); ++y)
        for (int x = 0; x < std::min(costs.width, canvas.width - left); ++x)
            if (const uint8_t entry = HeatMapEntry(costs.Row(y)[x])) canvas.Row(top + y)[left + x] = colours[entry];
}

}  // namespace

void PriceOverlay::Make(const CanvasView& frame, const Block& image) {
    Forget();
    words_ = kNoPrices;
    if (image.kind != kImageBlock || !image.data) return;
    const ImageFields fields = GetImageFields(image);
    const uint64_t pixels = uint64_t{fields.width} * fields.height;
    if (pixels == 0) return;
    words_ = kTooManyPixels;
    if (pixels > kMostMeasuredPixels) return;
    words_ = kNoMemory;
    PixelCosts costs;
    const size_t count = static_cast<size_t>(frame.width) * static_cast<size_t>(frame.height);
    auto copy = AllocateScratchArray<uint32_t>(count);
    if (!copy || !MeasurePixelCosts(image, &costs)) return;
    std::copy_n(frame.pixels, count, copy.get());
    pixels_ = std::move(copy);
    picture_ = {pixels_.get(), frame.width, frame.height};
    DrawCosts(picture_, costs, fields.left, fields.top);
    words_ = DescribeCosts(costs);
}

void PriceOverlay::Forget() {
    pixels_.reset();
    picture_ = {};
    words_.clear();
}
