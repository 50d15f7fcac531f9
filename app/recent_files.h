// The recently used files at the end of the File menu, the newest first. Names are UTF-8.
#pragma once

#include "platform/prompts.h"
#include "platform/windows_api.h"

// Puts `name` at the top, unless it is listed already, is no full path with a drive, or the list is switched off.
// The oldest ones beyond the number set are dropped.
void AddRecentFile(HWND window, const char* name);

int RecentFileCount(HWND window);

// The command of item `index` (0: the newest).
int RecentFileId(int index);

// Gets the name that command `id` stands for into `name` (kPathBytes bytes). False when it stands for none.
bool GetRecentFile(HWND window, int id, char* name);
