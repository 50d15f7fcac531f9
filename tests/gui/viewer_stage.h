// A viewer's window on a stage: the test decides when its messages run, and interlaced rows need no time to appear.
#pragma once

#include "imaging/draw/viewer_state.h"
#include "tests/gui/picture.h"

class ViewerStage {
public:
    ViewerStage(BlockList* list, int clientWidth, int clientHeight);
    ~ViewerStage();
    ViewerStage(const ViewerStage&) = delete;
    ViewerStage& operator=(const ViewerStage&) = delete;

    // Runs the next message that the viewer has posted to itself and returns it; 0 when there is none.
    UINT Step();
    // Ends a running delay as the timer does.
    void Tick() { SendMessageW(window_, WM_TIMER, kDelayTimer, 0); }
    // Runs everything, delays included, until nothing is posted any more. Returns the number of images shown.
    int PlayToEnd();

    HWND Window() const { return window_; }
    const ViewerState& State() const { return state_; }
    Picture Look() const { return ::Look(WindowDc(window_).Get(), clientWidth_, clientHeight_); }
    // Has everything painted again, as when another window went away.
    void Expose() const { RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }

private:
    ViewerState state_ = {};
    HWND window_ = nullptr;
    int clientWidth_, clientHeight_;
};
