#include "size/numbered_canvas.h"

#include <algorithm>

NumberedCanvas::NumberedCanvas(int width, int height) : width_(static_cast<size_t>(width)) {
    const auto empty = std::make_shared<Band>(width_ * kBandRows);
    bands_.assign(static_cast<size_t>((height + kBandRows - 1) / kBandRows), empty);
}

ColourId* NumberedCanvas::OwnRow(int y) {
    std::shared_ptr<Band>& band = bands_[BandOf(y)];
    if (band.use_count() > 1) band = std::make_shared<Band>(*band);
    return &(*band)[PlaceOf(y)];
}

void NumberedCanvas::Clear(const Rectangle& rectangle) {
    for (int y = rectangle.top; y < rectangle.bottom; ++y)
        std::fill_n(OwnRow(y) + rectangle.left, static_cast<size_t>(rectangle.Width()), kTransparentId);
}

namespace {

void TakeRow(const ColourId* from, const ColourId* to, const Rectangle& within, int y, ChangeExtent* found) {
    const auto width = static_cast<size_t>(within.Width());
    if (from == to) return;  // shared
    if (memcmp(from + within.left, to + within.left, width * sizeof *from) == 0) return;
    int left = within.left, right = within.right;
    Narrow(from, to, &left, &right);
    found->box = Around(found->box, {left, y, right, y + 1});
    uint64_t pixels = 0, vanishing = 0;
    for (int x = left; x < right; ++x) {
        pixels += from[x] != to[x];
        vanishing += from[x] != to[x] && to[x] == kTransparentId;
    }
    found->pixels += pixels;
    if (vanishing == 0) return;
    const auto vanishes = [&](int x) { return from[x] != to[x] && to[x] == kTransparentId; };
    while (!vanishes(left)) ++left;
    while (!vanishes(right - 1)) --right;
    found->vanishing = Around(found->vanishing, {left, y, right, y + 1});
}

}  // namespace

ChangeExtent Compare(const NumberedCanvas& from, const NumberedCanvas& to, const Rectangle& within) {
    ChangeExtent found;
    if (within.IsEmpty()) return found;
    for (int y = within.top; y < within.bottom; ++y) TakeRow(from.Row(y), to.Row(y), within, y, &found);
    return found;
}
