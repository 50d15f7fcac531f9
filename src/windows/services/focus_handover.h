// Keeps the keyboard with the program when dialogs close quickly one after the other.
//
// Under Wine a window manager owns the focus. When a dialog goes, it offers the focus to the dialog underneath, a
// moment later; when that one has gone by then, as after the answer to the question whether to replace a file, the
// offer is lost, and with it the keyboard: for the window manager the dialog that never took the focus has none to pass
// on.
#pragma once

#include "platform/windows_api.h"

// While it lives, a dialog of this thread, the system's included, that goes away waits until the dialog underneath has
// been given the focus. It waits half a second at most, and not at all where no window manager has a say.
class FocusHandover {
public:
    FocusHandover();
    ~FocusHandover();
    FocusHandover(const FocusHandover&) = delete;
    FocusHandover& operator=(const FocusHandover&) = delete;

private:
    HHOOK hook_;
};

// To be called by the main window on WM_MOUSEACTIVATE. That is how it learns of being offered the focus, and we of
// there being a window manager.
void NoteActivation(HWND window, LPARAM lParam);
