#include "windows/app/window_places.h"

#include <algorithm>

#include "windows/services/settings.h"

namespace {

constexpr long kMargin = 8;
constexpr long kFilmstripHeight = 95;  // beside its scroll bar

// Lines seldom need more than the widest list; the narrowest one leaves the preview half of the smallest window.
constexpr long kNarrowestList = 180, kWidestList = 400;

}  // namespace

WindowPlaces PlacesIn(SIZE client) {
    WindowPlaces places = {};
    places.list = {kMargin, kMargin, client.cx - kMargin, client.cy - kMargin};
    if (settings.filmstrip) {
        places.filmstrip = places.list;
        places.filmstrip.top =
            std::max(places.list.bottom - kFilmstripHeight - GetSystemMetrics(SM_CYHSCROLL), places.list.top);
        places.list.bottom = places.filmstrip.top - kMargin;
    }
    if (settings.preview) {
        const long width = std::clamp((places.list.right - kMargin) * 2 / 5, kNarrowestList, kWidestList);
        places.preview = places.list;
        places.list.right = kMargin + width;
        places.preview.left = places.list.right + kMargin;
    }
    return places;
}

WindowPlaces PlacesIn(HWND window) {
    RECT client = {};
    GetClientRect(window, &client);
    return PlacesIn(SIZE{client.right, client.bottom});
}
