// A canvas whose colours are numbers, and what differs between two of them.
#pragma once

#include <cstring>
#include <memory>
#include <vector>

#include "animation/rectangle.h"
#include "size/colour_ids.h"

// Starts transparent. Copies share what they have in common, in bands of rows: one that differs by little costs little.
// May throw std::bad_alloc wherever it allocates.
class NumberedCanvas {
public:
    NumberedCanvas(int width, int height);

    const ColourId* Row(int y) const { return &(*bands_[BandOf(y)])[PlaceOf(y)]; }
    // The row to be written.
    ColourId* OwnRow(int y);
    // Makes the rectangle, which must lie in the canvas, transparent.
    void Clear(const Rectangle& rectangle);

private:
    using Band = std::vector<ColourId>;
    static constexpr int kBandRows = 8;

    static size_t BandOf(int y) { return static_cast<size_t>(y / kBandRows); }
    size_t PlaceOf(int y) const { return static_cast<size_t>(y % kBandRows) * width_; }

    size_t width_;
    std::vector<std::shared_ptr<Band>> bands_;
};
using CanvasHandle = std::shared_ptr<const NumberedCanvas>;

struct ChangeExtent {
    Rectangle box;        // empty where nothing differs
    Rectangle vanishing;  // where something becomes transparent
    uint64_t pixels = 0;
};

// What has to be drawn on `from` to show `to`, which are of one size and differ only in `within`.
ChangeExtent Compare(const NumberedCanvas& from, const NumberedCanvas& to, const Rectangle& within);

// Takes off the ends of a stretch of two rows what is the same in both. They must differ somewhere in it.
template <typename Pixel>
void Narrow(const Pixel* a, const Pixel* b, int* left, int* right) {
    constexpr int kStep = 32 / sizeof(Pixel);  // compared at a time
    const auto isSame = [a, b](int x) { return memcmp(a + x, b + x, kStep * sizeof(Pixel)) == 0; };
    while (*right - *left > kStep && isSame(*left)) *left += kStep;
    while (a[*left] == b[*left]) ++*left;
    while (*right - *left > kStep && isSame(*right - kStep)) *right -= kStep;
    while (a[*right - 1] == b[*right - 1]) --*right;
}
