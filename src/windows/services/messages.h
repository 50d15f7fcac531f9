// The program's own message dialogs, which grow with long texts. Texts are Windows-1252, as LoadStr (texts/strings.h)
// returns them.
#pragma once

#include <string>

#include "platform/windows_api.h"

// Shows `text` with an OK button and waits. The second form is for texts with names of files, which may be in any
// script.
void MessageBox(HWND owner, const char* text);
void MessageBox(HWND owner, const std::wstring& text);

// Ask `text`; return IDYES (6), IDNO (7) or, the first one only, IDCANCEL (2). A dialog that fails counts as Cancel or
// No.
int YesNoCancelBox(HWND owner, const char* text);
int YesnoBox(HWND owner, const char* text);
int YesnoBox(HWND owner, const std::wstring& text);
