// What the main window shows of the document besides its lines: the title and the commands that can be chosen.
#pragma once

#include "platform/windows_api.h"

void SetTitle(HWND window, const char* name);  // a file name in UTF-8
void SetTitleText(HWND window, unsigned id);   // a text of the string table in its place

// Enables or greys the commands that need a document.
void EnableDocumentCommands(HWND window, bool enabled);
