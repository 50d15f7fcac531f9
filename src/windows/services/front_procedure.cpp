#include "windows/services/front_procedure.h"

#include <algorithm>
#include <vector>

namespace {

struct Place {
    HWND control;
    WNDPROC front, behind;
};

// A handful. They are not kept as properties of their windows: under Wine every look at one asks the server, which
// makes filling a list of a thousand lines felt.
std::vector<Place> places;

auto FindPlace(HWND control, WNDPROC front) {
    return std::ranges::find_if(places,
                                [=](const Place& place) { return place.control == control && place.front == front; });
}

}  // namespace

void PutInFront(HWND control, WNDPROC front) {
    const LONG_PTR behind = GetWindowLongPtrW(control, GWLP_WNDPROC);
    if (!control || FindPlace(control, front) != places.end()) return;
    places.push_back({control, front, reinterpret_cast<WNDPROC>(behind)});
    SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(front));
}

LRESULT CallBehind(WNDPROC front, HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto place = FindPlace(control, front);
    if (place == places.end()) return DefWindowProcW(control, message, wParam, lParam);
    const WNDPROC behind = place->behind;
    if (message == WM_NCDESTROY) places.erase(place);
    return CallWindowProcW(behind, control, message, wParam, lParam);
}
