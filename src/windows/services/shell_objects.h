// The process-wide objects that start-up creates and everyone with a window uses.
#pragma once

#include "platform/windows_api.h"

extern HINSTANCE hInstance;  // the program's module: resources and strings come from here
extern HWND hMainWindow;
extern HFONT hListFont;    // for the main window's children; null before start-up
extern HBRUSH hFaceBrush;  // the system colour of button faces; null before start-up
