// Dialogs of texts and a few buttons, each of which ends the dialog.
#pragma once

#include <functional>

#include "platform/windows_api.h"

using DialogStep = std::function<void(HWND dialog)>;

// Shows the dialog template `name` in the centre of the screen until OK, Cancel, Yes or No is pressed. Returns that
// button's id, or 0 when the dialog could not be shown. `fill` is called before it appears, `take` before it goes; one
// that throws ends the dialog with 0.
int RunPlainDialog(HWND owner, const wchar_t* name, const DialogStep& fill, const DialogStep& take = nullptr);
