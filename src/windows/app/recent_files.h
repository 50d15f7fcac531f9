// The recently used files at the end of the File menu, the newest first. Names are UTF-8.
#pragma once

#include <string>
#include <vector>

#include "platform/windows_api.h"

// Puts `name` at the top, unless it is listed already, is no full path with a drive, or the list is switched off.
// The oldest ones beyond the number set are dropped. Without memory for the names the list stays as it is.
void AddRecentFile(HWND window, const std::string& name);

// Takes item `id` out for good: merging does not bring it back. Nothing happens when there is no such item.
void RemoveRecentFile(HWND window, int id);

// Shows their names as the options want them now.
void ShowRecentFiles(HWND window);

// All of them, the newest first.
std::vector<std::string> RecentFiles(HWND window);

// A new window begins with no news; then it has the list that another run left.
void StartRecentFiles();
void NoteRecentFilesRead(HWND window);

// The list together with the `stored` one (the newest first), to which another editor may have added meanwhile: first
// what was opened here, then what is stored, without what was found gone, then the rest; as many as the list may hold.
std::vector<std::string> MergeRecentFiles(HWND window, const std::vector<std::string>& stored);

int RecentFileCount(HWND window);

// The command of item `index` (0: the newest).
int RecentFileId(int index);

// The name that command `id` stands for; empty when it stands for none.
std::string GetRecentFile(HWND window, int id);
