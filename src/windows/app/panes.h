// The panes beside the list, preview and filmstrip: which of them there are, where, what they show, and how the
// keyboard gets to them.
#pragma once

#include "platform/windows_api.h"

// Makes the window as the options say: its menu, its panes, the colours of its list.
void ApplyOptions(HWND window);

// Puts the panes into their places again after the window's size has changed.
void FitPanes(HWND window);

// Takes the panes away before the window goes.
void ClosePanes(HWND window);

// Lets them show the document as it is and the selected line.
void ShowPanes(HWND window);

// A frame was selected in the filmstrip: selects its line.
void OnFilmstripNotification(HWND window, int notification);

// Makes `control`, a child of the main window, go on to the next stop by its keys (window_stops.h), and give Space to
// the preview, if there is one, and to that one also the wheel that is turned over it.
void PassPaneKeys(HWND control);
