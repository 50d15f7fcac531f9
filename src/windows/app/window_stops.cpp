#include "windows/app/window_stops.h"

#include <algorithm>
#include <vector>

#include "windows/ids/command_ids.h"
#include "windows/ids/notice_ids.h"
#include "windows/ids/pane_ids.h"

namespace {

HWND left;  // what had the focus when the window was left

// Those that there are now, in the order in which they are gone round.
std::vector<HWND> Stops(HWND window) {
    HWND notice = GetDlgItem(window, IDC_NOTICE);
    std::vector<HWND> stops;
    for (int id : {IDC_BLOCK_LIST, IDC_PREVIEW, IDC_FILMSTRIP}) stops.push_back(GetDlgItem(window, id));
    for (int id : {IDC_NOTICE_WHOLE, IDC_NOTICE_CLOSE}) stops.push_back(notice ? GetDlgItem(notice, id) : nullptr);
    std::erase(stops, nullptr);
    return stops;
}

void FocusNext(const std::vector<HWND>& stops, bool back) {
    const auto count = std::ssize(stops), from = std::ranges::find(stops, GetFocus()) - stops.begin();
    const bool isOutside = from == count;
    const auto next = isOutside ? (back ? count - 1 : 0) : (from + (back ? count - 1 : 1)) % count;
    SetFocus(stops[static_cast<size_t>(next)]);
}

}  // namespace

bool TakesStopKey(HWND window, UINT message, WPARAM key) {
    const bool isDown = message == WM_KEYDOWN;
    const bool isOurs = key == VK_TAB ? isDown || message == WM_CHAR : isDown && key == VK_F6;
    if (!isOurs) return false;
    const std::vector<HWND> stops = Stops(window);
    if (stops.empty() || (stops.size() == 1 && GetFocus() == stops[0])) return false;
    if (isDown) FocusNext(stops, GetKeyState(VK_SHIFT) < 0);
    return true;  // what Tab would type is taken away, too
}

void KeepFocus(HWND window) {
    // A window manager may also have it activated and left in the midst of a dialog; nothing has the focus then.
    if (HWND focus = GetFocus(); IsChild(window, focus)) left = focus;
}

void GiveFocusBack(HWND window) {
    if (GetFocus() == window && IsChild(window, left) && IsWindowVisible(left) && IsWindowEnabled(left)) SetFocus(left);
}
