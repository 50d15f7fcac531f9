#include "windows/services/shell_objects.h"

HINSTANCE hInstance;
HWND hMainWindow;
HFONT hListFont;
HBRUSH hFaceBrush;
