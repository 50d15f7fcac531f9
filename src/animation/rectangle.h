// Rectangles of pixels.
#pragma once

#include <algorithm>
#include <cstdint>

// From (left, top) up to but without (right, bottom). Any without pixels counts as empty.
struct Rectangle {
    int left = 0, top = 0, right = 0, bottom = 0;

    bool IsEmpty() const { return right <= left || bottom <= top; }
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    uint64_t Pixels() const { return IsEmpty() ? 0 : static_cast<uint64_t>(Width()) * static_cast<uint64_t>(Height()); }
    bool operator==(const Rectangle&) const = default;
};

// What both have; all zero when that is nothing.
inline Rectangle Common(const Rectangle& a, const Rectangle& b) {
    Rectangle both = {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                      std::min(a.bottom, b.bottom)};
    return both.IsEmpty() ? Rectangle() : both;
}

// The smallest that holds both.
inline Rectangle Around(const Rectangle& a, const Rectangle& b) {
    if (a.IsEmpty()) return b;
    if (b.IsEmpty()) return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}
