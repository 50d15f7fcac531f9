// A viewer's window on a stage: the test decides when its messages run, and interlaced rows need no time to appear.
#pragma once

#include <utility>

#include "tests/gui/picture.h"
#include "windows/services/screen_scale.h"
#include "windows/services/settings.h"
#include "windows/viewer/viewer_state.h"

class ViewerStage {
public:
    ViewerStage(BlockList* list, int clientWidth, int clientHeight) : width_(clientWidth), height_(clientHeight) {
        settings.interlaceDelay = 0;
        WNDCLASSW stage = {};
        stage.lpfnWndProc = ViewerProc;
        stage.hInstance = GetModuleHandleW(nullptr);
        stage.lpszClassName = L"Viewer stage";
        RegisterClassW(&stage);
        if (!BeginViewing(&state_, list)) return;
        window_ = CreateWindowExW(WS_EX_TOPMOST, L"Viewer stage", L"", WS_POPUP | WS_VISIBLE, 20, 30, width_, height_,
                                  nullptr, nullptr, stage.hInstance, &state_);
        // A new window is exposed a little later; what is painted until then would be erased again.
        for (DWORD start = GetTickCount(); GetTickCount() - start < 60; Sleep(5))
            for (auto [from, to] : {std::pair{0u, WM_VIEWER_NEXT - 1}, {WM_VIEWER_DISPOSE + 1, 0xFFFFFFFFu}})
                for (MSG message; PeekMessageW(&message, nullptr, from, to, PM_REMOVE);) DispatchMessageW(&message);
    }
    ~ViewerStage() {
        DestroyWindow(window_);
        EndViewing(&state_);
        UnregisterClassW(L"Viewer stage", GetModuleHandleW(nullptr));
        MSG message = {};  // until the request to quit that a viewer leaves
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT)
            DispatchMessageW(&message);
    }
    ViewerStage(const ViewerStage&) = delete;
    ViewerStage& operator=(const ViewerStage&) = delete;

    // As on a screen of that density.
    void MoveToScreen(int dpi) const { SendMessageW(window_, kDpiChanged, MAKEWPARAM(dpi, dpi), 0); }
    // Runs the next message that the viewer has posted to itself and returns it; 0 when there is none.
    UINT Step() {
        MSG message;
        if (!PeekMessageW(&message, window_, WM_VIEWER_NEXT, WM_VIEWER_DISPOSE, PM_REMOVE)) return 0;
        DispatchMessageW(&message);
        return message.message;
    }
    // Ends a running delay as the timer does.
    void Tick() { SendMessageW(window_, WM_TIMER, kDelayTimer, 0); }
    // Runs everything, delays included, until nothing is posted any more. Returns the number of images shown.
    int PlayToEnd() {
        for (int images = 0;; Tick()) {
            for (UINT message = Step(); message; message = Step()) images += message == WM_VIEWER_DELAY;
            if (pendingWait == 0) return images;
        }
    }

    HWND Window() const { return window_; }
    const ViewerState& State() const { return state_; }
    Picture Look() const { return ::Look(WindowDc(window_).Get(), width_, height_); }
    // Has everything painted again, as when another window went away; after erasing it with RDW_ERASE.
    void Expose(UINT erase = 0) const {
        RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | erase);
    }

private:
    ViewerState state_ = {};
    HWND window_ = nullptr;
    int width_, height_;
};
