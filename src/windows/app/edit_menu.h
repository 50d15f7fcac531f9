// The Edit menu: its commands, their keys, and what can be done at the moment.
#pragma once

#include "platform/windows_api.h"

// Puts the menu into the bar of `window`, behind the File menu.
void AddEditMenu(HWND window);

// Shows in the menu what can be done now, and to what. To be called when the menu is about to open.
void UpdateEditMenu(HWND window);

// Runs a command of the menu, if it can be done. False when the command is none of the menu.
bool RunEditCommand(HWND window, int command);

// To be called when `key` is pressed: gives `window` the command that it stands for, together with the Ctrl, Shift and
// Alt keys that are down. False when it stands for none.
bool PressEditKey(HWND window, WPARAM key);

// Shows the menu of the selected line there, in pixels of the screen. False when it can't be shown.
bool ShowLineMenu(HWND window, POINT place);

// Makes the control pass the menu's keys on to the window that it is in.
void PassEditKeys(HWND control);
