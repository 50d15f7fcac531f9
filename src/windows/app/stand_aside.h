// Where a window comes up while there are others of this program.
#pragma once

#include "platform/windows_api.h"

// Moves the main window, by the height of a caption at a time, to where its upper left corner does not lie on that of
// another editor's window; it stays on its screen.
void StandAside(HWND window);
