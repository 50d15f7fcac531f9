#include "windows/services/focus_handover.h"

#include <cwchar>

namespace {

// Milliseconds. The window manager has to see that its offer was taken before the window may go.
constexpr DWORD kLongestWait = 500, kLook = 20, kUntilSeen = 100;
constexpr wchar_t kDialogClass[] = L"#32770";

bool focusIsOffered;  // there is a window manager that offers the focus
HWND awaited;         // the window that waits for the offer
bool awaitedGotFocus;

// Wine passes the window manager's offer on as if the menu had been clicked.
bool IsOffer(LPARAM lParam) {
    return LOWORD(lParam) == HTMENU && HIWORD(lParam) == WM_LBUTTONDOWN;
}

bool IsManagedByWine(HWND window) {
    return GetPropW(window, L"__wine_x11_whole_window") != nullptr;
}

LRESULT CALLBACK LookForOffer(int code, WPARAM wParam, LPARAM lParam) {
    const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && sent.hwnd == awaited && sent.message == WM_MOUSEACTIVATE && IsOffer(sent.lParam))
        awaitedGotFocus = true;
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

// Lets messages in for as long, or until `*over`. No input: keys pressed meanwhile are for the window that gets the
// focus.
void LetMessagesIn(DWORD milliseconds, const bool* over) {
    const DWORD start = GetTickCount();
    while (!*over && GetTickCount() - start < milliseconds) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, kLook, QS_POSTMESSAGE | QS_SENDMESSAGE | QS_PAINT);
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
}

void AwaitFocus(HWND window) {
    HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROC, LookForOffer, nullptr, GetCurrentThreadId());
    if (!hook) return;
    awaited = window;
    awaitedGotFocus = false;
    LetMessagesIn(kLongestWait, &awaitedGotFocus);
    UnhookWindowsHookEx(hook);
    constexpr bool kNever = false;
    if (awaitedGotFocus) LetMessagesIn(kUntilSeen, &kNever);
}

bool IsOpenDialog(HWND window) {
    wchar_t name[8] = L"";
    GetClassNameW(window, name, 8);
    return !wcscmp(name, kDialogClass) && IsWindowVisible(window) && IsWindowEnabled(window);
}

LRESULT CALLBACK OnThreadEvent(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_DESTROYWND && focusIsOffered) {
        HWND owner = GetWindow(reinterpret_cast<HWND>(wParam), GW_OWNER);
        if (owner && owner == GetActiveWindow() && IsOpenDialog(owner)) AwaitFocus(owner);
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

FocusHandover::FocusHandover() : hook_(SetWindowsHookExW(WH_CBT, OnThreadEvent, nullptr, GetCurrentThreadId())) {}

FocusHandover::~FocusHandover() {
    if (hook_) UnhookWindowsHookEx(hook_);
}

void NoteActivation(HWND window, LPARAM lParam) {
    if (IsOffer(lParam) && IsManagedByWine(window)) focusIsOffered = true;
}
