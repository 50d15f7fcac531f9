// Windows that cover a whole monitor.
#pragma once

#include "platform/windows_api.h"

// Makes a window of the class and `style` without a title, over the whole monitor that the owner is on (the primary one
// without an owner), and shows it. `parameter` reaches WM_CREATE. Null when the window can't be made.
HWND ShowFullScreen(HWND owner, const wchar_t* className, DWORD style, void* parameter);
