#include "windows/services/messages.h"

#include <initializer_list>
#include <new>

#include "platform/wide_text_win32.h"
#include "windows/ids/message_ids.h"
#include "windows/services/plain_dialog.h"

namespace {

SIZE SizeOf(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    return {place.right - place.left, place.bottom - place.top};
}

void Resize(HWND window, SIZE size) {
    SetWindowPos(window, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// The height in pixels that the text needs in its control.
LONG HeightOfText(HWND control, const std::wstring& text) {
    HDC dc = GetDC(control);
    HGDIOBJ previous = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT place = {0, 0, SizeOf(control).cx, 0};
    DrawTextW(dc, text.c_str(), -1, &place, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS);
    SelectObject(dc, previous);
    ReleaseDC(control, dc);
    return place.bottom;
}

// Makes room for a text that the dialog's template has none for.
void GrowToText(HWND dialog, const std::wstring& text) {
    HWND control = GetDlgItem(dialog, IDC_MESSAGE_TEXT);
    const SIZE own = SizeOf(control), whole = SizeOf(dialog);
    const LONG more = HeightOfText(control, text) - own.cy;
    if (more <= 0) return;
    Resize(control, {own.cx, own.cy + more});
    Resize(dialog, {whole.cx, whole.cy + more});
    for (int id : {IDOK, IDYES, IDNO, IDCANCEL}) {
        HWND button = GetDlgItem(dialog, id);
        if (!button) continue;
        RECT place = {};
        GetWindowRect(button, &place);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
        SetWindowPos(button, nullptr, place.left, place.top + more, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

int Ask(HWND owner, const wchar_t* name, const std::wstring& text) {
    return RunPlainDialog(owner, name, [&text](HWND dialog) {
        SetDlgItemTextW(dialog, IDC_MESSAGE_TEXT, text.c_str());
        GrowToText(dialog, text);
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
