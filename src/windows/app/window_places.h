// Where the parts of the main window lie.
#pragma once

#include "platform/windows_api.h"

struct WindowPlaces {
    RECT list, preview, filmstrip;  // the last two are empty while their options are off
};

// In a client area from (0, 0) to `client` on a screen of `dpi`, with the panes that the settings ask for.
WindowPlaces PlacesIn(SIZE client, int dpi);

// The same for the main window as it is.
WindowPlaces PlacesIn(HWND window);
