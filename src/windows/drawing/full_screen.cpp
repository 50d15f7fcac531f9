#include "windows/drawing/full_screen.h"

#include "windows/services/shell_objects.h"

namespace {

RECT MonitorOf(HWND window) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor)) return monitor.rcMonitor;
    return {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
}

}  // namespace

// The window asks for its place itself: a maximised popup window of no size of its own gets none from a window manager.
HWND ShowFullScreen(HWND owner, const wchar_t* className, DWORD style, void* parameter) {
    const RECT area = MonitorOf(owner);
    HWND window = CreateWindowExW(0, className, L"", style | WS_POPUP | WS_MAXIMIZE, area.left, area.top,
                                  area.right - area.left, area.bottom - area.top, owner, nullptr, hInstance, parameter);
    if (window) ShowWindow(window, SW_SHOWMAXIMIZED);
    return window;
}
