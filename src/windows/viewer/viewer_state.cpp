#include "windows/viewer/viewer_state.h"

#include "gif/descriptor.h"
#include "windows/drawing/device_bitmaps.h"

int32_t pendingWait;

namespace {

constexpr int kPatternSide = 8;
constexpr int kPatternDepth = 2;

// A pattern brush reaches colours that a screen with a palette would only approximate in a solid one.
HBRUSH MakeBackgroundBrush(RgbTriple background, COLORREF colour) {
    RgbTriples colours = {background};
    const MemoryHandle made = CreateImageBitmap(kPatternSide, kPatternSide, colours, kPatternDepth);
    ImageLock pattern(made);
    return pattern ? CreateDIBPatternBrushPt(InfoOf(pattern), DIB_RGB_COLORS) : CreateSolidBrush(colour);
}

}  // namespace

bool BeginViewing(ViewerState* state, BlockList* list) {
    const Block* header = FindHeader(*list);
    if (!header) return false;
    const HeaderFields fields = GetHeaderFields(*header);
    const RgbTriple background = header->palette.Colours()[fields.backgroundIndex];
    state->screenWidth = fields.screenWidth;
    state->screenHeight = fields.screenHeight;
    state->hasGlobalPalette = (fields.packed & kHasPalette) ? 1 : 0;
    state->globalPalette = header->palette;
    state->nextIndex = header->position + 1u;
    state->backgroundColour = RGB(background.red, background.green, background.blue);
    state->list = list;
    state->backgroundBrush = state->hasGlobalPalette ? MakeBackgroundBrush(background, state->backgroundColour)
                                                     : CreateSolidBrush(RGB(0, 0, 0));
    return true;
}

void EndViewing(ViewerState* state) {
    ForgetSavedUnder(*state);
    if (state->backgroundBrush) DeleteObject(state->backgroundBrush);
    *state = {};
}
