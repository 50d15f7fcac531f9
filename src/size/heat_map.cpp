#include "size/heat_map.h"

#include "animation/paint_image.h"
#include "imaging/heat_scale.h"
#include "size/pixel_costs.h"

namespace {
constexpr int kSteps = kPaletteEntries - 1;
}

HeatMapColours MakeHeatMapColours() {
    HeatMapColours colours = {kTransparent};
    for (size_t i = 1; i <= kSteps; ++i) colours[i] = PixelOf(HeatColour(static_cast<double>(i - 1) / (kSteps - 1)));
    return colours;
}

uint8_t HeatMapEntry(float bits) {
    return bits > 0 ? static_cast<uint8_t>(1.5 + HeatOfBits(bits) * (kSteps - 1)) : 0;
}
