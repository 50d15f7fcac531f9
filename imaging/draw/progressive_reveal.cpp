#include "imaging/draw/progressive_reveal.h"

namespace {

constexpr int kSteps[] = {8, 8, 4, 2, 2};
constexpr int kStarts[] = {0, 4, 2, 1, 0};  // after the last pass there is nothing left to draw
constexpr int kLastPass = 4;
constexpr DWORD kRowMilliseconds = 4;

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

void RevealOrder::Next() {
    row_ += kSteps[pass_];
    if (row_ < height_ || pass_ == kLastPass) return;
    ++pass_;
    row_ = kStarts[pass_];
}

void RevealPace::WaitForNextRow() {
    DWORD due = ++rows_ * kRowMilliseconds;
    DWORD elapsed = GetTickCount() - start_;
    if (hurried_ || elapsed >= due) return;
    GdiFlush();
    hurried_ = UserWantsToLeave();
    if (!hurried_) Sleep(due - elapsed);
}
