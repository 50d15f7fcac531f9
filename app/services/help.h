// The help file beside the program.
#pragma once

#include "platform/windows_api.h"

// Opens the help file at the page of `keyword` ("KLMHeader" and so on).
void ShowHelp(HWND owner, const char* keyword);

// The help file's path (UTF-8, shared buffer); ends in "?", which names no file, when it would be too long.
const char* HelpFilePath();

// What HelpFilePath answers for a program at `program`. `path` has kPathBytes (platform/prompts.h) bytes.
void HelpFileBeside(const char* program, char* path);

// Tells the help system where to open its window: the left half of the screen.
void PlaceHelpWindow(HWND owner);
