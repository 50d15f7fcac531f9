#include "windows/app/preview_view.h"

#include <iterator>

namespace {

constexpr Zoom kSteps[] = {{1, 64}, {1, 32}, {1, 16}, {1, 8}, {1, 6}, {1, 4},  {1, 3},  {1, 2},  {1, 1},
                           {2, 1},  {3, 1},  {4, 1},  {6, 1}, {8, 1}, {12, 1}, {16, 1}, {24, 1}, {32, 1}};

bool IsNearer(const Zoom& a, const Zoom& b) {
    return a.enlarge * b.reduce > b.enlarge * a.reduce;
}

// The step next to `zoom`, which may lie between two; the outermost one has none behind it.
Zoom NextStep(const Zoom& zoom, bool nearer) {
    if (nearer) {
        const auto* next = std::ranges::find_if(kSteps, [&](const Zoom& step) { return IsNearer(step, zoom); });
        return next == std::end(kSteps) ? zoom : *next;
    }
    Zoom next = zoom;
    for (const Zoom& step : kSteps)
        if (IsNearer(zoom, step)) next = step;
    return next;
}

// A canvas that fits stands in the middle; of a larger one no edge comes away from the edge of the place.
LONG Settled(LONG corner, int size, int place) {
    return size <= place ? (place - size) / 2 : std::clamp<LONG>(corner, place - size, 0);
}

int Moved(int at, LONG corner, const Zoom& from, const Zoom& to) {
    const int64_t pixels = at - corner;
    return static_cast<int>(at - pixels * from.reduce * to.enlarge / (int64_t{from.enlarge} * to.reduce));
}

}  // namespace

void PreviewView::SetPlace(int width, int height, int natural) {
    placeWidth_ = width, placeHeight_ = height, natural_ = natural;
    Settle();
}

void PreviewView::SetCanvas(int width, int height) {
    if (width == canvasWidth_ && height == canvasHeight_) return;
    canvasWidth_ = width, canvasHeight_ = height;
    Fit();
}

void PreviewView::Fit() {
    isFitted_ = true;
    Settle();
}

void PreviewView::StepNearer(bool nearer, POINT at) {
    const Zoom before = zoom_;
    zoom_ = NextStep(zoom_, nearer);
    isFitted_ = false;
    corner_ = {Moved(at.x, corner_.x, before, zoom_), Moved(at.y, corner_.y, before, zoom_)};
    Settle();
}

void PreviewView::MoveBy(int x, int y) {
    corner_.x += x, corner_.y += y;
    Settle();
}

RECT PreviewView::Around(const struct Rectangle& area) const {
    const auto begin = [this](int at) { return at * zoom_.enlarge / zoom_.reduce; };
    return {corner_.x + begin(area.left) - 1, corner_.y + begin(area.top) - 1,
            corner_.x + ZoomedSize(area.right, zoom_) + 1, corner_.y + ZoomedSize(area.bottom, zoom_) + 1};
}

void PreviewView::Settle() {
    if (isFitted_) zoom_ = ZoomToFit(canvasWidth_, canvasHeight_, placeWidth_, placeHeight_, natural_);
    corner_.x = Settled(corner_.x, ZoomedSize(canvasWidth_, zoom_), placeWidth_);
    corner_.y = Settled(corner_.y, ZoomedSize(canvasHeight_, zoom_), placeHeight_);
}
