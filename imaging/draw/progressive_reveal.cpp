#include "imaging/draw/progressive_reveal.h"

#include "app/services/settings.h"

namespace {

bool IsWaiting(UINT first, UINT last, MSG* message) {
    return PeekMessageW(message, nullptr, first, last, PM_NOREMOVE) != FALSE;
}

// Looking into the queue also tells the system that the program is alive.
bool UserWantsToLeave() {
    MSG message;
    if (IsWaiting(WM_KEYDOWN, WM_KEYDOWN, &message) && message.wParam == VK_ESCAPE) return true;
    if (IsWaiting(WM_CHAR, WM_CHAR, &message) && message.wParam == VK_ESCAPE) return true;
    return IsWaiting(WM_RBUTTONDOWN, WM_RBUTTONDBLCLK, &message) || IsWaiting(WM_CLOSE, WM_CLOSE, &message);
}

}  // namespace

void RevealPace::WaitForNextRow() {
    DWORD due = ++rows_ * settings.interlaceDelay;
    DWORD elapsed = GetTickCount() - start_;
    if (hurried_ || elapsed >= due) return;
    GdiFlush();
    hurried_ = UserWantsToLeave();
    if (!hurried_) Sleep(due - elapsed);
}
