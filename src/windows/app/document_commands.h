// The commands that create, load, save and discard the document.
#pragma once

#include "platform/windows_api.h"

void OnNew(HWND window);
void OnOpen(HWND window);
void OnOpenWhole(HWND window);                   // the file that the notice strip is about
void OnOpenFile(HWND window, const char* name);  // UTF-8; null or empty: nothing happens
void OnClose(HWND window);
void OnSave(HWND window);
void OnSaveAs(HWND window);
void OnWizard(HWND window);
void OnRecentFile(HWND window, int id);
void OnExit(HWND window);

// Asks about a changed document, as the commands do that discard it. False when it is to stay.
bool AskToSave(HWND window);

// The same, and closes the document unless it is to stay.
bool LeaveDocument(HWND window);

// Whether the document is saved in the whole manner.
bool SavesWhole();

// Whether the screen is fitted to the images when the document is saved.
bool ScreenFollowsImages();
