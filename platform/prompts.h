// How the core speaks to its user. Each face links its own: the editor its string table and dialogs, the command line
// texts on standard error and options, the tests scripted answers. No core file knows which.
#pragma once

#include <string>

#include "platform/window_handle.h"

constexpr int kAnswerYes = 6;  // AskYesNo
constexpr int kAnswerNo = 7;

// The text number `id` of the string table (resources/string_ids.h), in Windows-1252. A number without a text gives
// "String table error - this application may be damaged". The text lies in one shared buffer of 256 bytes that the
// next call overwrites.
const char* LoadStr(unsigned id);

// Shows `text` and waits until the user has read it.
void ShowMessage(WindowHandle owner, const char* text);

// Asks a question; returns kAnswerYes or kAnswerNo.
int AskYesNo(WindowHandle owner, const char* text);

// Lets the user choose an existing GIF file. `path` is UTF-8: in, a file in the folder to start from, or empty; out,
// the chosen file. False when the user cancelled; `path` then stays.
bool AskForGifFile(WindowHandle owner, std::string* path);
