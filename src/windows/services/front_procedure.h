// Window procedures that see the messages of a control before its own one does.
#pragma once

#include "platform/windows_api.h"

// Puts `front` before the procedure that the control has now. Each is put before a control once at most, and is the
// control's as long as that lives.
void PutInFront(HWND control, WNDPROC front);

// Has the message handled by the procedure that `front` was put before. It is to do so for every message that it does
// not take, WM_NCDESTROY always.
LRESULT CallBehind(WNDPROC front, HWND control, UINT message, WPARAM wParam, LPARAM lParam);
