// What all dialogs of the editing floor do alike: font, colours, centring, up-down controls, OK, Cancel and Help.
#pragma once

#include "platform/windows_api.h"

struct PaletteButtons;

// One kind of dialog. Every procedure reaches what is edited through editedBlock; any of them may be null.
struct DialogKind {
    const wchar_t* templateName;
    const char* helpKeyword;        // the page that the Help button opens
    bool (*show)(HWND dialog);      // fills the controls; false: told to the user as out of memory, ends with 0
    INT_PTR (*take)(HWND dialog);   // on OK: reads the controls back and returns what the dialog ends with
    INT_PTR cancelResult;           // what it ends with on Cancel
    const PaletteButtons* buttons;  // its colour and eyedropper buttons
    bool (*onCommand)(HWND dialog, int id, int notification);  // other commands; whether it was one of the dialog's
    INT_PTR (*onMessage)(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);  // other messages
};

// Runs the dialog over `edited`, as its own DialogKind describes. Returns what it ended with, or 0 when it can't be
// shown. `kind` must outlive the dialog.
INT_PTR RunEditingDialog(HWND parent, const DialogKind& kind, void* edited);
