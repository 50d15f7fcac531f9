// What every dialog of the program has in common.
#pragma once

#include "platform/windows_api.h"

// The answer to WM_CTLCOLORMSGBOX, WM_CTLCOLORBTN, WM_CTLCOLORDLG and WM_CTLCOLORSTATIC: sets the colours of `dc` and
// returns hFaceBrush, its origin aligned to the window's place on the screen.
HBRUSH ControlColour(HWND window, HDC dc);

// The same for a window or dialog procedure: the brush when `message` is one of the four, 0 ("not handled") otherwise.
INT_PTR AnswerControlColour(UINT message, WPARAM wParam, LPARAM lParam);

// Gives a window the program's icon, which desktops show beside its title and in their lists of windows. On other
// screens than usual ones also the picture of it that a dialog may hold is made as large as there is room for.
void GiveProgramIcon(HWND window);

// How large the units of a dialog are, which follow its font more than the screen: in percent of usual ones, the
// smaller of both directions.
int PercentOfUsual(HWND dialog);

// Moves the window to the centre of the screen, keeping its size.
void CentreWindow(HWND window);

// Gives `font` to every child of `window`, and the focus to its child 1, or else 6, if there is one.
// Only the low 16 bits of the font handle travel; GDI accepts them.
void SetChildFonts(HWND window, HFONT font, bool redraw);

// Runs the modal dialog template `name` of the program's resources; `parameter` reaches WM_INITDIALOG.
// Returns what the dialog ended with, or 0 when it could not be shown. Afterwards the owner is updated.
INT_PTR RunDialog(HWND owner, const wchar_t* name, DLGPROC procedure, void* parameter);
