// The brightness of a colour.
#pragma once

// 0 to 254. Each share is rounded down on its own: the order of two colours, and what is black or white, depend on it.
constexpr int Luminance(int red, int green, int blue) {
    return red * 30 / 100 + green * 59 / 100 + blue * 11 / 100;
}

// Whether a colour becomes the second of two colours, which stand for black and white.
constexpr bool IsLight(int red, int green, int blue) {
    return Luminance(red, green, blue) >= 129;
}
