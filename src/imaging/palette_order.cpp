#include "imaging/palette_order.h"

#include <algorithm>

#include "imaging/luminance.h"

void SortPaletteByBrightness(RgbTriple* palette, int count, bool darkestFirst) {
    auto luminance = [](RgbTriple colour) { return Luminance(colour.red, colour.green, colour.blue); };
    auto precedes = [&](RgbTriple a, RgbTriple b) {
        return darkestFirst ? luminance(a) < luminance(b) : luminance(a) > luminance(b);
    };
    std::stable_sort(palette, palette + std::clamp(count, 0, kPaletteEntries), precedes);
}

int DepthForColourCount(int count) {
    int depth = 1;
    while (depth < 8 && count > 1 << depth) ++depth;
    return depth;
}
