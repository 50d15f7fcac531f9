#include "tests/gui/viewer_stage.h"

#include <utility>

#include "app/services/settings.h"

namespace {

constexpr wchar_t kStageClass[] = L"Viewer stage";

// A new window is exposed a little later; what is painted until then would be erased again.
void Settle() {
    for (DWORD start = GetTickCount(); GetTickCount() - start < 60; Sleep(5))
        for (auto [from, to] : {std::pair{0u, WM_VIEWER_NEXT - 1}, {WM_VIEWER_DISPOSE + 1, 0xFFFFFFFFu}})
            for (MSG message; PeekMessageW(&message, nullptr, from, to, PM_REMOVE);) DispatchMessageW(&message);
}

}  // namespace

ViewerStage::ViewerStage(BlockList* list, int clientWidth, int clientHeight)
    : clientWidth_(clientWidth), clientHeight_(clientHeight) {
    settings.interlaceDelay = 0;
    WNDCLASSW stage = {};
    stage.lpfnWndProc = ViewerProc;
    stage.hInstance = GetModuleHandleW(nullptr);
    stage.lpszClassName = kStageClass;
    RegisterClassW(&stage);
    if (!BeginViewing(&state_, list)) return;
    window_ = CreateWindowExW(WS_EX_TOPMOST, kStageClass, L"", WS_POPUP | WS_VISIBLE, 20, 30, clientWidth, clientHeight,
                              nullptr, nullptr, stage.hInstance, &state_);
    Settle();
}

ViewerStage::~ViewerStage() {
    DestroyWindow(window_);
    EndViewing(&state_);
    UnregisterClassW(kStageClass, GetModuleHandleW(nullptr));
    MSG message;  // the request to quit that a viewer leaves
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) DispatchMessageW(&message);
}

UINT ViewerStage::Step() {
    MSG message;
    if (!PeekMessageW(&message, window_, WM_VIEWER_NEXT, WM_VIEWER_DISPOSE, PM_REMOVE)) return 0;
    DispatchMessageW(&message);
    return message.message;
}

int ViewerStage::PlayToEnd() {
    for (int images = 0;;) {
        UINT message = Step();
        if (message == WM_VIEWER_DELAY) ++images;
        if (message) continue;
        if (pendingWait == 0) return images;
        Tick();
    }
}
