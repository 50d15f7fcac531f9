#include "windows/services/dialogs.h"

#include <initializer_list>

#include "windows/services/shell_objects.h"

HBRUSH ControlColour(HWND window, HDC dc) {
    SetBkColor(dc, GetSysColor(COLOR_BTNFACE));
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    POINT origin = {0, 0};
    ClientToScreen(window, &origin);
    UnrealizeObject(hFaceBrush);
    SetBrushOrgEx(dc, origin.x, origin.y, nullptr);
    return hFaceBrush;
}

INT_PTR AnswerControlColour(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CTLCOLORMSGBOX:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORDLG:
        case WM_CTLCOLORSTATIC:
            return reinterpret_cast<INT_PTR>(
                ControlColour(reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam)));
        default: return 0;
    }
}

void GiveProgramIcon(HWND dialog) {
    auto icon = reinterpret_cast<LPARAM>(LoadIconW(hInstance, L"KLMZEP"));
    for (WPARAM size : {WPARAM{ICON_BIG}, WPARAM{ICON_SMALL}}) SendMessageW(dialog, WM_SETICON, size, icon);
}

void CentreWindow(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    int width = place.right - place.left;
    int height = place.bottom - place.top;
    int x = (GetSystemMetrics(SM_CXSCREEN) - width) / 2;
    int y = (GetSystemMetrics(SM_CYSCREEN) - height) / 2;
    SetWindowPos(window, nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

namespace {

// Font handles travel in 16 bits when a window's children get them, beside the wish to redraw. They differ in these.
constexpr UINT_PTR kQuirkFontHandleBits = 0xFFFF;

BOOL CALLBACK SetOneFont(HWND child, LPARAM packed) {
    DWORD both = static_cast<DWORD>(packed);
    if (HIWORD(both)) SendMessageW(child, WM_SETFONT, HIWORD(both), MAKELPARAM(FALSE, 0));
    return TRUE;
}

}  // namespace

void SetChildFonts(HWND window, HFONT font, bool redraw) {
    HWND first = GetDlgItem(window, IDOK);
    if (!first) first = GetDlgItem(window, IDYES);
    if (first) SetFocus(first);
    auto shortHandle = static_cast<WORD>(reinterpret_cast<UINT_PTR>(font) & kQuirkFontHandleBits);
    EnumChildWindows(window, SetOneFont, MAKELPARAM(redraw, shortHandle));
}

INT_PTR RunDialog(HWND owner, const wchar_t* name, DLGPROC procedure, void* parameter) {
    INT_PTR answer = DialogBoxParamW(hInstance, name, owner, procedure, reinterpret_cast<LPARAM>(parameter));
    if (owner) UpdateWindow(owner);
    return answer == -1 ? 0 : answer;
}
