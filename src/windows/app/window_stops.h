// Where the keyboard goes in the main window: the list, the panes beside it and the buttons of the notice strip.
#pragma once

#include "platform/windows_api.h"

// Handles what Tab and F6 send to a stop, or to the window itself while it has the focus: they go to the next stop,
// with Shift to the one before. False for other messages, and in the list while there is nowhere else to go.
bool TakesStopKey(HWND window, UINT message, WPARAM key);

// To be called when the window is being left for another one, and when it is active again: the system gives the focus
// to the window itself then, where most keys have no meaning. The second gives it to the place inside that had it when
// the window was left, if that is still there.
void KeepFocus(HWND window);
void GiveFocusBack(HWND window);
