#include "app/services/messages.h"

#include "app/services/dialogs.h"
#include "platform/wide_text.h"
#include "resources/message_ids.h"

namespace {

void OnInitDialog(HWND dialog, const char* text) {
    SetDlgItemTextW(dialog, IDC_MESSAGE_TEXT, WideFrom1252(text).c_str());
    for (int id : {IDOK, IDYES})
        if (HWND button = GetDlgItem(dialog, id)) SetFocus(button);
    CentreWindow(dialog);
}

INT_PTR OnCommand(HWND dialog, int id) {
    if (id != IDOK && id != IDCANCEL && id != IDYES && id != IDNO) return FALSE;
    EndDialog(dialog, id);
    return TRUE;
}

INT_PTR CALLBACK MessageProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG: OnInitDialog(dialog, reinterpret_cast<const char*>(lParam)); return TRUE;
        case WM_COMMAND: return OnCommand(dialog, LOWORD(wParam));
        default: return AnswerControlColour(message, wParam, lParam);
    }
}

int Ask(HWND owner, const wchar_t* name, const char* text) {
    return static_cast<int>(RunDialog(owner, name, MessageProc, const_cast<char*>(text)));
}

}  // namespace

void MessageBox(HWND owner, const char* text) {
    Ask(owner, L"MessageBox", text);
}

int YesNoCancelBox(HWND owner, const char* text) {
    int answer = Ask(owner, L"YesNoCancelBox", text);
    return answer == IDYES || answer == IDNO ? answer : IDCANCEL;
}

int YesnoBox(HWND owner, const char* text) {
    return Ask(owner, L"YesnoBox", text) == IDYES ? IDYES : IDNO;
}
