// The commands that create, load, save and discard the document.
#pragma once

#include "platform/windows_api.h"

void OnNew(HWND window);
void OnOpen(HWND window);
void OnOpenFile(HWND window, const char* name);  // UTF-8; null or empty: nothing happens
void OnClose(HWND window);
void OnSave(HWND window);
void OnSaveAs(HWND window);
void OnWizard(HWND window);
void OnRecentFile(HWND window, int id);
void OnExit(HWND window);
