#include "windows/app/stand_aside.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "windows/app/main_window.h"
#include "windows/services/screen_scale.h"

namespace {

struct Others {
    HWND window;  // the one that they are not
    std::vector<POINT> corners;
};

bool IsMainWindow(HWND window) {
    wchar_t name[std::size(kMainWindowClass) + 1] = L"";
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return lstrcmpW(name, kMainWindowClass) == 0;
}

BOOL CALLBACK NoteCorner(HWND window, LPARAM lParam) {
    auto* others = reinterpret_cast<Others*>(lParam);
    RECT place = {};
    if (window != others->window && IsMainWindow(window) && IsWindowVisible(window) && !IsIconic(window) &&
        GetWindowRect(window, &place) && others->corners.size() < others->corners.capacity())
        others->corners.push_back({place.left, place.top});
    return TRUE;
}

bool IsTaken(const Others& others, POINT corner, int step) {
    return std::ranges::any_of(others.corners, [&](POINT other) {
        return std::abs(other.x - corner.x) < step && std::abs(other.y - corner.y) < step;
    });
}

RECT WorkAreaOf(HWND window) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

}  // namespace

void StandAside(HWND window) {
    if (IsZoomed(window) || IsIconic(window)) return;
    constexpr size_t kMostWindows = 100;
    Others others = {window, {}};
    others.corners.reserve(kMostWindows);  // no memory is taken while the system goes through the windows
    EnumWindows(NoteCorner, reinterpret_cast<LPARAM>(&others));
    RECT place = {};
    GetWindowRect(window, &place);
    const RECT work = WorkAreaOf(window);
    const int step = SystemMetricAt(SM_CYCAPTION, DpiOf(window)) + SystemMetricAt(SM_CYSIZEFRAME, DpiOf(window));
    POINT corner = {place.left, place.top};
    for (size_t tries = 0; tries < kMostWindows && IsTaken(others, corner, step); ++tries) {
        corner.x += step, corner.y += step;
        if (corner.y + place.bottom - place.top > work.bottom) corner.y = work.top;
        if (corner.x + place.right - place.left > work.right) corner.x = work.left;
    }
    if (corner.x != place.left || corner.y != place.top)
        SetWindowPos(window, nullptr, corner.x, corner.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
