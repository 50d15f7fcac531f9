// The system's file dialogs, set up for GIF files. Paths are UTF-8.
#pragma once

#include "platform/windows_api.h"

constexpr int kImagesBufferBytes = 32767;

// Each returns whether the user confirmed. `name` has kPathBytes (platform/prompts.h) bytes.
bool OpenGifDialog(HWND owner, char* name);  // in: a path whose folder to start in, or empty; out: the file chosen
bool SaveGifDialog(HWND owner, char* name);  // in: the name to propose; out: the one chosen

// Lets the user choose one or more files. `names` (kImagesBufferBytes, zeroed by the caller) receives one full path, or
// a folder followed by the names chosen, each NUL-terminated, ended by an empty name.
bool OpenImagesDialog(HWND owner, char* names);
