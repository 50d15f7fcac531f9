// The help file beside the program.
#pragma once

#include "platform/windows_api.h"

// Opens the help file at the page of `keyword` ("KLMHeader" and so on).
void ShowHelp(HWND owner, const char* keyword);

// The help file's path (UTF-8, shared buffer); ends in "?", which names no file, when it would be too long.
const char* HelpFilePath();
