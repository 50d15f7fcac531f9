// How far two pixels are apart.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

constexpr int kFarthest = 255;
constexpr int kNotComparable = kFarthest + 1;  // one of the two is transparent

// The largest difference of red, green or blue between two pixels of a canvas: 0 to kFarthest, or kNotComparable.
inline int ColourDistance(uint32_t a, uint32_t b) {
    constexpr int kOpacityShift = 24;
    if (a == b) return 0;
    if ((a ^ b) >> kOpacityShift) return kNotComparable;
    int distance = 0;
    for (int shift = 0; shift < kOpacityShift; shift += 8) {
        const int difference = static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF);
        distance = std::max(distance, std::abs(difference));
    }
    return distance;
}
