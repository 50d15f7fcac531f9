// The main window: its class, its creation and the messages it answers.
#pragma once

#include "platform/windows_api.h"

// Opens the file whose name (UTF-8) lParam points to; the document before must have been closed.
constexpr UINT UM_OPENFILE = WM_USER + 46;

constexpr wchar_t kMainWindowClass[] = L"KLM Zephyr";
constexpr int kMinimumWidth = 400;  // outer size in pixels of a usual screen, also the size at start
constexpr int kMinimumHeight = 440;

void RegisterMainWindowClass();

// Gives the window the font and the list the lines for the screen that it is on. What lies in it is placed elsewhere.
void FitMainWindowToScreen(HWND window);

// Creates the main window (hMainWindow) with its block list, not yet shown.
void CreateMainWindow();
