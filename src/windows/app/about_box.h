// The About box: name, version and build.
#pragma once

#include "platform/windows_api.h"

void ShowAboutBox(HWND owner);
