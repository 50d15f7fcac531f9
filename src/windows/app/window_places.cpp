#include "windows/app/window_places.h"

#include <algorithm>

#include "windows/services/screen_scale.h"
#include "windows/services/settings.h"

namespace {

// Pixels of a usual screen.
constexpr int kMargin = 8;
constexpr int kFilmstripHeight = 95;  // beside its scroll bar

// Lines seldom need more than the widest list; the narrowest one leaves the preview half of the smallest window.
constexpr int kNarrowestList = 180, kWidestList = 400;

}  // namespace

WindowPlaces PlacesIn(SIZE client, int dpi) {
    const long margin = ScaledTo(dpi, kMargin);
    WindowPlaces places = {};
    places.list = {margin, margin, client.cx - margin, client.cy - margin};
    if (settings.filmstrip) {
        places.filmstrip = places.list;
        const long height = ScaledTo(dpi, kFilmstripHeight) + SystemMetricAt(SM_CYHSCROLL, dpi);
        places.filmstrip.top = std::max(places.list.bottom - height, places.list.top);
        places.list.bottom = places.filmstrip.top - margin;
    }
    if (settings.preview) {
        const long narrowest = ScaledTo(dpi, kNarrowestList), widest = ScaledTo(dpi, kWidestList);
        const long width = std::clamp((places.list.right - margin) * 2 / 5, narrowest, widest);
        places.preview = places.list;
        places.list.right = margin + width;
        places.preview.left = places.list.right + margin;
    }
    return places;
}

WindowPlaces PlacesIn(HWND window) {
    RECT client = {};
    GetClientRect(window, &client);
    return PlacesIn(SIZE{client.right, client.bottom}, DpiOf(window));
}
