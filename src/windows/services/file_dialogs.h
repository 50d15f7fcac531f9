// The system's file dialogs, set up for GIF files and pictures. Paths are UTF-8.
#pragma once

#include <string>

#include "platform/windows_api.h"

// Each returns whether the user confirmed; if not, `name` stays.
bool OpenGifDialog(HWND owner, std::string* name);  // in: a path whose folder to start in, or empty; out: the choice
bool SaveGifDialog(HWND owner, std::string* name);  // in: the name to propose; out: the one chosen
// The same for a PNG file. `asksToReplace`: whether the dialog asks about a file that is there.
bool SavePngDialog(HWND owner, bool asksToReplace, std::string* name);

// What the dialog for images lists. A name that is typed is taken whatever it ends with.
enum class ListedKinds : bool {
    kUsual,     // GIF files; in careful mode as below
    kPictures,  // pictures of all kinds that can be read
};

// Lets the user choose one or more files. `names` receives one full path, or a folder followed by the names chosen,
// each with a NUL behind it. False when the user cancelled, and after telling that memory has run out.
bool OpenImagesDialog(HWND owner, ListedKinds kinds, std::string* names);
