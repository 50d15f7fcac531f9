// Tips for the lines of a list box: what a line has no room for, shown while the mouse rests on it.
#pragma once

#include <string>

#include "platform/windows_api.h"

// What the tip of a line says; empty when it has none.
using TipOfLine = std::wstring (*)(HWND list, int line);

// Gives the list its tips, which it keeps as long as it is there. Nothing happens when that fails.
void GiveLineTips(HWND list, TipOfLine tipOf);
