// The About box: name, version and build.
#pragma once

#include "platform/api_win32.h"

void ShowAboutBox(HWND owner);
