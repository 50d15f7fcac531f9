// Files dropped on the main window.
#pragma once

#include "platform/windows_api.h"

// Answers WM_DROPFILES: opens the first file in place of the document; with Ctrl held and a document open it inserts
// the first image of each behind the line under the mouse, or behind the last one.
LRESULT OnDropFiles(HWND window, WPARAM drop);
