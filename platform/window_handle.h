// The one thing the portable floors know about windows: a handle to pass along to whoever shows messages.
#pragma once

struct HWND__;  // NOLINT(bugprone-reserved-identifier): the name that Win32 gives it
using WindowHandle = HWND__*;  // the same type as Win32's HWND; null on the command line
