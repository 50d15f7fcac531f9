// What all dialogs of the editing floor do alike: font, colours, centring, up-down controls, OK, Cancel and Help.
#pragma once

#include "platform/windows_api.h"

struct PaletteButtons;

// Posted to a dialog that the system has scaled, as it has come to a screen of another density.
constexpr UINT UM_RESCALED = WM_APP + 1;

// One kind of dialog. Its procedures reach what is edited with Edited (windows/dialogs/edited_block.h); any of them may
// be null.
struct DialogKind {
    const wchar_t* templateName = nullptr;
    const char* helpKeyword = nullptr;        // the page that the Help button opens
    bool (*show)(HWND dialog) = nullptr;      // fills the controls; false: told as out of memory, ends with 0
    int (*take)(HWND dialog) = nullptr;       // on OK: reads the controls back and returns what the dialog ends with.
                                              // In careful mode not before all fields with up-downs have numbers
    int cancelResult = 0;                     // what it ends with on Cancel
    const PaletteButtons* buttons = nullptr;  // its colour and eyedropper buttons
    bool (*onClick)(HWND dialog, int id) = nullptr;  // a click on another control; whether it was one of the dialog's
    // Other messages, and notifications other than clicks.
    INT_PTR (*onMessage)(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) = nullptr;
    void (*place)(HWND dialog) = nullptr;  // moves it to its place before it is seen; null: the centre of the screen
};

// Runs the dialog over `edited`, as its own DialogKind describes. Returns what it ended with, or 0 when it can't be
// shown. `kind` must outlive the dialog. A procedure that throws, as memory has run out, makes the dialog tell so; only
// `show` then ends it.
int RunEditingDialog(HWND parent, const DialogKind& kind, void* edited);
