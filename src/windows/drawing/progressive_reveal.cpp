#include "windows/drawing/progressive_reveal.h"

#include <algorithm>

#include "windows/services/settings.h"

namespace {

constexpr uint32_t kLongestRowDelay = 1000;
constexpr WPARAM kSystemCommandBits = 0xFFF0;  // the system uses the others itself

bool IsCloseCommand(const MSG& message) {
    return message.message == WM_SYSCOMMAND && (message.wParam & kSystemCommandBits) == SC_CLOSE;
}

bool WillClose(const MSG& message) {
    switch (message.message) {
        case WM_CHAR: return message.wParam == VK_ESCAPE;
        case WM_SYSKEYDOWN: return message.wParam == VK_F4;
        case WM_COMMAND: return LOWORD(message.wParam) == IDCANCEL;
        default: return IsCloseCommand(message);
    }
}

// Also true when the thread is to quit.
bool IsWaiting(HWND window, UINT kind, MSG* message) {
    return PeekMessageW(message, window, kind, kind, PM_NOREMOVE) != FALSE;
}

// The queue shows only the first of the keys and commands that wait for a window. So those before the closing one are
// handled, and that one goes back.
bool TakeKeysUpToClosingOne(HWND window) {
    MSG message;
    while (PeekMessageW(&message, window, WM_KEYFIRST, WM_SYSCOMMAND, PM_REMOVE)) {
        const bool quits = message.message == WM_QUIT;
        if (quits) PostQuitMessage(static_cast<int>(message.wParam));
        const bool closes = !quits && WillClose(message);
        if (closes) PostMessageW(window, message.message, message.wParam, message.lParam);
        if (quits || closes) return true;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return false;
}

// The owner may be closed too, and the viewer with it. Looking into the queue also tells the system that the program is
// alive.
bool IsToBeClosed(HWND window) {
    MSG message;
    for (UINT button : {UINT{WM_RBUTTONDOWN}, UINT{WM_RBUTTONDBLCLK}})
        if (IsWaiting(window, button, &message)) return true;
    return IsWaiting(nullptr, WM_CLOSE, &message) || (window && TakeKeysUpToClosingOne(window)) ||
           (IsWaiting(nullptr, WM_SYSCOMMAND, &message) && IsCloseCommand(message));
}

}  // namespace

RevealPace::RevealPace(HDC dc)
    : window_(WindowFromDC(dc)),
      start_(GetTickCount()),
      rowDelay_(std::min(settings.interlaceDelay, kLongestRowDelay)) {}

DWORD RevealPace::MillisecondsLeft() const {
    const DWORD due = rows_ * rowDelay_, elapsed = GetTickCount() - start_;
    return elapsed < due ? due - elapsed : 0;
}

void RevealPace::WaitForNextRow() {
    ++rows_;
    while (!hurried_) {
        const DWORD left = MillisecondsLeft();
        if (left == 0) return;
        GdiFlush();
        GetQueueStatus(QS_ALLINPUT);  // what comes from here on ends the sleep
        hurried_ = IsToBeClosed(window_);
        if (!hurried_) MsgWaitForMultipleObjects(0, nullptr, FALSE, left, QS_ALLINPUT);
    }
}
