// What happens between the system starting the program and the program ending.
#pragma once

#include <string>

#include "platform/windows_api.h"

// The font and the brush that all windows share, for as long as the windows live.
void CreateShellObjects(HINSTANCE instance);
void DeleteShellObjects();

// Creates the main window with its fonts, not yet shown.
void PrepareMainWindow();

// Shows the main window, without a document.
void ShowMainWindow(int showCommand);

// The part of a command line behind the program's name.
const wchar_t* CommandLineArguments(const wchar_t* commandLine);

// The file to open for these arguments (UTF-8): they name one as they are or, in careful mode, with blanks or quotation
// marks around it and further names behind it.
std::string StartName(const std::string& arguments);

// Runs the editor until its window is closed. `previous` is the entry point's previous-instance argument, always null
// on today's systems; `commandLine` (UTF-8) is the name of a file to open, or empty. The settings are kept in
// `settingsFolder` (windows/app/settings_file.h), which the caller has set.
void RunEditor(HINSTANCE instance, HINSTANCE previous, const char* commandLine, int showCommand);
