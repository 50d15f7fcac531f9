// A viewer's window on a stage: the test decides when its messages run.
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
    void Steps(int count) {
        while (count-- > 0) Step();
    }
    // Ends a running delay as the timer does.
    void Tick() { SendMessageW(Window(), WM_TIMER, kDelayTimer, 0); }
    // Runs everything, delays included, until nothing is posted any more. Returns the number of images shown.
    int PlayToEnd();

    HWND Window() const { return window_; }
    const ViewerState& State() const { return state_; }
    Picture Look() const;
    // Has everything painted again, as when another window went away.
    void Expose() const {
        InvalidateRect(window_, nullptr, FALSE);
        UpdateWindow(window_);
    }
    bool TimerRuns() const;  // and stops it

private:
    InstantReveal instantReveal_;
    ViewerState state_ = {};
    HWND window_ = nullptr;
    int clientWidth_, clientHeight_;
};
