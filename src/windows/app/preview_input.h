// What keys, mouse and menu do with a preview.
#pragma once

#include "platform/windows_api.h"

// Handles the message for the pane; what is no input of that kind is left to the system.
LRESULT OnPreviewInput(HWND pane, UINT message, WPARAM wParam, LPARAM lParam);
