#include "windows/services/messages.h"

#include <new>

#include "platform/wide_text_win32.h"
#include "windows/ids/message_ids.h"
#include "windows/services/plain_dialog.h"

namespace {

int Ask(HWND owner, const wchar_t* name, const std::wstring& text) {
    return RunPlainDialog(owner, name, [&text](HWND dialog) {
        SetDlgItemTextW(dialog, IDC_MESSAGE_TEXT, text.c_str());
        for (int id : {IDOK, IDYES})
            if (HWND button = GetDlgItem(dialog, id)) SetFocus(button);
    });
}

int Ask(HWND owner, const wchar_t* name, const char* text) {
    try {
        return Ask(owner, name, WideFrom1252(text));
    } catch (const std::bad_alloc&) {
        return 0;  // as if it could not be shown
    }
}

}  // namespace

void MessageBox(HWND owner, const char* text) {
    Ask(owner, L"MessageBox", text);
}

void MessageBox(HWND owner, const std::wstring& text) {
    Ask(owner, L"MessageBox", text);
}

int YesNoCancelBox(HWND owner, const char* text) {
    int answer = Ask(owner, L"YesNoCancelBox", text);
    return answer == IDYES || answer == IDNO ? answer : IDCANCEL;
}

int YesnoBox(HWND owner, const char* text) {
    return Ask(owner, L"YesnoBox", text) == IDYES ? IDYES : IDNO;
}

int YesnoBox(HWND owner, const std::wstring& text) {
    return Ask(owner, L"YesnoBox", text) == IDYES ? IDYES : IDNO;
}
