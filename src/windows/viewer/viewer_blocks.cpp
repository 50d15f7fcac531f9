// What the viewer does with each block of the document, and when.
#include <utility>

#include "gif/descriptor.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/drawing/plain_text.h"
#include "windows/viewer/viewer_state.h"

namespace {

constexpr UINT kMillisecondsPerHundredth = 10;
constexpr int32_t kInputWait = 1;

void Post(HWND window, UINT message) {
    PostMessageW(window, message, 0, 0);
}

// What a later painting needs too, when the player has gone on to other blocks.
void RememberImage(ViewerState& state) {
    const ImageFields fields = GetImageFields(state.current);
    state.imageLeft = fields.left;
    state.imageTop = fields.top;
    state.imageWidth = fields.width;
    state.imageHeight = fields.height;
    state.imageTransparentIndex = state.transparentIndex;
    state.imageInterlaced = (fields.packed & kImageInterlaced) != 0;
    state.imagePalette = (fields.packed & kHasPalette) ? state.current.palette : state.globalPalette;
    state.currentImage = std::exchange(state.current.data, nullptr);
}

// The image must be on screen before its delay starts, so it is painted here and now.
void ShowImage(HWND window, ViewerState& state) {
    ForgetSavedUnder(state);
    RememberImage(state);
    InvalidateRect(window, nullptr, FALSE);
    UpdateWindow(window);
    Post(window, WM_VIEWER_DELAY);
}

// An animation that repeats never runs without any delay.
void ApplyControl(ViewerState& state) {
    const ControlFields fields = GetControlFields(state.current);
    state.transparentIndex = (fields.packed & kControlTransparent) ? fields.transparentIndex : kNoTransparentIndex;
    state.waitForInput = fields.packed & kControlUserInput;
    state.disposal = (fields.packed & kControlDisposal) >> kControlDisposalShift;
    state.delay = fields.delay;
    if (state.loopsLeft > 0 && state.delay == 0) state.delay = 1;
}

void ApplyLoop(ViewerState& state) {
    if (state.loopsLeft == kNoLoopYet) {
        int32_t iterations = GetLoopIterations(state.current);
        state.loopsLeft = iterations == 0 ? kEndlessLoops : iterations;
    }
    if (state.delay == 0) state.delay = 1;
}

// Goes on to the next block in any case, also when memory runs out here.
void ShowText(HWND window, const ViewerState& state) {
    Post(window, WM_VIEWER_NEXT);
    WindowDc dc(window);
    DrawPlainText(dc.Get(), window, state.current, nullptr, state.transparentIndex);
}

void RestartIfLooping(HWND window, ViewerState& state) {
    if (state.loopsLeft <= 0) return;
    --state.loopsLeft;
    state.nextIndex = kQuirkLoopStart;
    Post(window, WM_VIEWER_NEXT);
}

}  // namespace

void PlayNextBlock(HWND window, ViewerState& state) {
    if (!GetBlock(*state.list, &state.current, state.nextIndex)) return RestartIfLooping(window, state);
    ++state.nextIndex;
    switch (state.current.kind) {
        case kImageBlock:
            if (!state.current.data) break;  // its picture could not be read
            return ShowImage(window, state);
        case kControlBlock: ApplyControl(state); break;
        case kPlainTextBlock: return ShowText(window, state);
        case kLoopBlock: ApplyLoop(state); break;
    }
    Post(window, WM_VIEWER_NEXT);
}

void StartDelay(HWND window, const ViewerState& state) {
    if (state.delay == 0) {
        if (state.waitForInput) pendingWait = kInputWait;
        Post(window, WM_VIEWER_DISPOSE);
        return;
    }
    pendingWait = static_cast<int32_t>(state.delay);
    if (!SetTimer(window, kDelayTimer, state.delay * kMillisecondsPerHundredth, nullptr)) MessageBeep(0);
}

void EndDelay(HWND window) {
    KillTimer(window, kDelayTimer);
    Post(window, WM_VIEWER_DISPOSE);
    pendingWait = 0;
}

void ForgetDelay(HWND window) {
    if (pendingWait > 0) KillTimer(window, kDelayTimer);
    pendingWait = 0;
}
