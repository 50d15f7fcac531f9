#include "animation/canvas.h"

#include <cstring>

#include "platform/memory.h"

namespace {

size_t BytesOf(int pixels) {
    return static_cast<size_t>(pixels) * sizeof(uint32_t);
}

// The smallest rectangle with all places of `area` at which `counts` holds.
template <typename Counts>
Rectangle Holding(const Rectangle& area, Counts counts) {
    Rectangle found;
    for (int y = area.top; y < area.bottom; ++y) {
        int left = area.left, right = area.right;
        while (left < right && !counts(left, y)) ++left;
        while (right > left && !counts(right - 1, y)) --right;
        if (left < right) found = Around(found, Rectangle{left, y, right, y + 1});
    }
    return found;
}

}  // namespace

bool Canvas::Create(int width, int height) {
    const Rectangle area = {0, 0, width, height};
    pixels_ = AllocateScratchArray<uint32_t>(area.Pixels());
    if (!pixels_) return false;
    view_ = {pixels_.get(), width, height};
    return true;
}

void CopyPixels(const CanvasView& to, const CanvasView& from, const Rectangle& area) {
    const Rectangle both = Common(area, {0, 0, std::min(to.width, from.width), std::min(to.height, from.height)});
    for (int y = both.top; y < both.bottom; ++y)
        memcpy(to.Row(y) + both.left, from.Row(y) + both.left, BytesOf(both.Width()));
}

void ClearPixels(const CanvasView& canvas, const Rectangle& area) {
    for (int y = area.top; y < area.bottom; ++y)
        std::fill_n(canvas.Row(y) + area.left, static_cast<size_t>(area.Width()), kTransparent);
}

Rectangle Difference(const CanvasView& a, const CanvasView& b) {
    Rectangle rows = {0, 0, a.width, a.height};
    auto isSame = [&](int y) { return memcmp(a.Row(y), b.Row(y), BytesOf(a.width)) == 0; };
    while (rows.top < rows.bottom && isSame(rows.top)) ++rows.top;
    while (rows.top < rows.bottom && isSame(rows.bottom - 1)) --rows.bottom;
    return Holding(rows, [&](int x, int y) { return a.Row(y)[x] != b.Row(y)[x]; });
}

Rectangle AreaToClear(const CanvasView& shown, const CanvasView& wanted) {
    return Holding({0, 0, shown.width, shown.height},
                   [&](int x, int y) { return wanted.Row(y)[x] == kTransparent && shown.Row(y)[x] != kTransparent; });
}
