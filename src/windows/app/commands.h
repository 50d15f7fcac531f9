// The commands of the main window's menus and the notifications of its list.
#pragma once

#include "platform/windows_api.h"

// Runs command `id`; `notification` tells what happened in the list, for its own id. Always answers 0.
LRESULT OnCommand(HWND window, int id, int notification);

void OnView(HWND window);
void OnEdit(HWND window);
void OnInsert(HWND window);
void OnInsertPictures(HWND window);
void OnDelete(HWND window);
