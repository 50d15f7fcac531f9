// A line of the block list that is dragged moves its block.
#pragma once

#include "platform/windows_api.h"

// To be called once for the list, which is in the main window. A mark shows between which lines the block would go;
// Escape, and the other button, let it stay where it is.
void LetLinesBeDragged(HWND list);
