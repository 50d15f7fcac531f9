// The help beside the program: TELVAR.HLP for the help viewer, and the same pages as help\KEYWORD.html for a browser.
#pragma once

#include <string>

#include "platform/windows_api.h"

// Shows the page of `keyword` ("KLMHeader" and so on): in the help viewer or, if that shows nothing, in the browser.
// When neither can be had, the user is told.
void ShowHelp(HWND owner, const char* keyword);

// The help file's path (UTF-8); ends in "?", which names no file, when it would be too long.
std::string HelpFilePath();

// What HelpFilePath answers for a program at `program`.
std::string HelpFileBeside(const std::string& program);

// Tells the help system where to open its window: the left half of the screen.
void PlaceHelpWindow(HWND owner);

// Tells the help viewer that this program needs it no longer; it closes when no other program does.
void CloseHelp(HWND owner);

// What the system has for showing pages; tests bring their own.
struct HelpSystem {
    // Passes a command to the help viewer. `file` is in the system's encoding. False when the viewer can't be started.
    bool (*callViewer)(HWND owner, const char* file, UINT command, const void* data);
    // Whether the viewer has a window on the screen, or gets one within a moment.
    bool (*viewerAppears)();
    // Opens a page in the browser. False when there is none.
    bool (*openPage)(HWND owner, const wchar_t* path);
    // Set when the viewer has failed once: it is not called a second time.
    bool viewerFailed;
};

enum class HelpOutcome { kInViewer, kInBrowser, kNoFiles, kNoBrowser };

// ShowHelp for a program at `program` (UTF-8), without telling the user.
HelpOutcome OpenHelp(HWND owner, const std::string& program, const char* keyword, HelpSystem* system);
