// The file that keeps the settings and the recent files, KLMZEP.INI.
#pragma once

#include <string>

#include "platform/windows_api.h"

// The folder in which the editor keeps the file, in UTF-8. Empty: nowhere.
extern std::string settingsFolder;

// Makes it the Windows directory.
void FindSettingsFolder();

// Reads the settings from the file in `folder`; without one, or with an empty `folder`, all stay as they are.
void ReadSettings(const std::string& folder);

// Hands the recent files listed in the file in `folder` to AddRecentFile, the oldest first.
void ReadRecentFiles(HWND window, const std::string& folder);

// Replaces the file in `folder` by one with the settings and the recent files of the menu of `window`.
// In careful mode the recent files in the old file are merged in. When it can't be written the old one stays.
void WriteSettings(HWND window, const std::string& folder);
