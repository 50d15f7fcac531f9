// Rectangles of pixels. Windows has a function of the same name: headers say `struct Rectangle`, which is the type also
// where both are known.
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
inline struct Rectangle Common(const struct Rectangle& a, const struct Rectangle& b) {
    struct Rectangle both = {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                             std::min(a.bottom, b.bottom)};
    if (both.IsEmpty()) both = {};
    return both;
}

// The smallest that holds both.
inline struct Rectangle Around(const struct Rectangle& a, const struct Rectangle& b) {
    if (a.IsEmpty()) return b;
    if (b.IsEmpty()) return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}
