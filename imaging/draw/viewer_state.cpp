#include "imaging/draw/viewer_state.h"

#include <cstring>

#include "gif/descriptor.h"

int32_t pendingWait;

namespace {

constexpr int kPatternSide = 8;
constexpr int kPatternDepth = 2;

// A pattern brush reaches colours that a screen with a palette would only approximate in a solid one.
void MakeBackgroundBrush(ViewerState* state, RgbTriple background) {
    RgbTriples colours = {background};
    state->brushPattern = CreateImageBitmap(kPatternSide, kPatternSide, colours, kPatternDepth);
    if (state->brushPattern) {
        LOGBRUSH brush = {BS_DIBPATTERN, DIB_RGB_COLORS, reinterpret_cast<ULONG_PTR>(state->brushPattern)};
        state->backgroundBrush = CreateBrushIndirect(&brush);
    } else {
        state->backgroundBrush = CreateSolidBrush(state->backgroundColour);
    }
}

}  // namespace

bool BeginViewing(ViewerState* state, BlockList* list) {
    Block header;
    int index = FindHeader(*list);
    if (index < 0 || !GetBlock(*list, &header, static_cast<uint32_t>(index))) return false;
    const HeaderFields fields = GetHeaderFields(header);
    const RgbTriple background = header.palette[fields.backgroundIndex];
    state->screenWidth = fields.screenWidth;
    state->screenHeight = fields.screenHeight;
    state->hasGlobalPalette = (fields.packed & kHasPalette) ? 1 : 0;
    memcpy(state->globalPalette, header.palette, sizeof state->globalPalette);
    state->nextIndex = header.position + 1u;
    state->backgroundColour = RGB(background.red, background.green, background.blue);
    state->transparentIndex = kNoTransparentIndex;
    state->loopsLeft = kNoLoopYet;
    state->list = list;
    if (state->hasGlobalPalette)
        MakeBackgroundBrush(state, background);
    else
        state->backgroundBrush = CreateSolidBrush(RGB(0, 0, 0));
    return true;
}

void EndViewing(ViewerState* state) {
    ForgetSavedUnder(*state);
    if (state->backgroundBrush) DeleteObject(state->backgroundBrush);
    FreeMemory(state->brushPattern);
    *state = {};
}
