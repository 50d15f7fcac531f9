#include "windows/services/plain_dialog.h"

#include <exception>

#include "windows/services/dialogs.h"

namespace {

struct Steps {
    const DialogStep* fill;
    const DialogStep* take;
};

INT_PTR OnInitDialog(HWND dialog, LPARAM lParam) {
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    const auto* steps = reinterpret_cast<const Steps*>(lParam);
    GiveProgramIcon(dialog);
    (*steps->fill)(dialog);
    CentreWindow(dialog);
    return TRUE;
}

INT_PTR OnCommand(HWND dialog, int id) {
    if (id != IDOK && id != IDCANCEL && id != IDYES && id != IDNO) return FALSE;
    const auto* steps = reinterpret_cast<const Steps*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (*steps->take) (*steps->take)(dialog);
    EndDialog(dialog, id);
    return TRUE;
}

INT_PTR OnMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG: return OnInitDialog(dialog, lParam);
        case WM_COMMAND: return OnCommand(dialog, LOWORD(wParam));
        default: return AnswerControlColour(message, wParam, lParam);
    }
}

// A step fails when memory has run out; no exception may cross the system's code.
INT_PTR CALLBACK PlainDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        return OnMessage(dialog, message, wParam, lParam);
    } catch (const std::exception&) {
        return EndDialog(dialog, 0);
    }
}

}  // namespace

int RunPlainDialog(HWND owner, const wchar_t* name, const DialogStep& fill, const DialogStep& take) {
    Steps steps = {&fill, &take};
    return static_cast<int>(RunDialog(owner, name, PlainDialogProc, &steps));
}
