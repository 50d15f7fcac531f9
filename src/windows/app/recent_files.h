// The recently used files at the end of the File menu, the newest first. Names are UTF-8.
#pragma once

#include <string>

#include "platform/windows_api.h"

// Puts `name` at the top, unless it is listed already, is no full path with a drive, or the list is switched off.
// The oldest ones beyond the number set are dropped. Without memory for the names the list stays as it is.
void AddRecentFile(HWND window, const std::string& name);

int RecentFileCount(HWND window);

// The command of item `index` (0: the newest).
int RecentFileId(int index);

// The name that command `id` stands for; empty when it stands for none.
std::string GetRecentFile(HWND window, int id);
