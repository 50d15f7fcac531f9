// The help viewer and the browser of the system, as HelpSystem (windows/services/help.h) wants them.
#pragma once

#include "platform/windows_api.h"

bool CallHelpViewer(HWND owner, const char* file, UINT command, const void* data);
bool HelpViewerAppears();
bool OpenInBrowser(HWND owner, const wchar_t* path);
