// Files that were dropped on a window.
#pragma once

#include <string>
#include <vector>

#include "platform/windows_api.h"
// After that: it needs its types.
#include <shellapi.h>

// The paths (UTF-8) that WM_DROPFILES brings to `window`, in their order, and where on the screen they were dropped.
// Releases the drop.
std::vector<std::string> TakeDroppedFiles(HWND window, HDROP drop, POINT* place);
