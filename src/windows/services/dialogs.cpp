#include "windows/services/dialogs.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <utility>

#include "windows/services/screen_scale.h"
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

namespace {

// The program's icon in a size that the system does not keep itself; null when it can't be loaded. The few that there
// are stay until the program ends.
HICON ProgramIcon(int size) {
    static std::map<int, HICON> icons;
    HICON& icon = icons[size];
    if (!icon) icon = static_cast<HICON>(LoadImageW(hInstance, L"KLMZEP", IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
    return icon;
}

// The picture of the icon beside a text: the system takes one for the screen, while the room for it is in units of the
// dialog's font.
void FitIconPicture(HWND dialog) {
    constexpr int kUsualSize = 32;
    for (HWND child = nullptr; (child = FindWindowExW(dialog, child, L"Static", nullptr)) != nullptr;)
        if ((GetWindowLongW(child, GWL_STYLE) & SS_TYPEMASK) == SS_ICON)
            SendMessageW(child, STM_SETICON,
                         reinterpret_cast<WPARAM>(ProgramIcon(MulDiv(kUsualSize, PercentOfUsual(dialog), 100))), 0);
}

}  // namespace

void GiveProgramIcon(HWND window) {
    const int dpi = DpiOf(window);
    for (const auto& [kind, metric] : {std::pair{ICON_BIG, SM_CXICON}, {ICON_SMALL, SM_CXSMICON}}) {
        HICON icon = dpi == kUsualDpi ? LoadIconW(hInstance, L"KLMZEP") : ProgramIcon(SystemMetricAt(metric, dpi));
        SendMessageW(window, WM_SETICON, static_cast<WPARAM>(kind), reinterpret_cast<LPARAM>(icon));
    }
    if (dpi != kUsualDpi) FitIconPicture(window);
}

int PercentOfUsual(HWND dialog) {
    constexpr RECT kUsual = {0, 0, 6000, 13000};  // pixels
    RECT units = {0, 0, 4000, 8000};
    if (!MapDialogRect(dialog, &units)) return 100;
    return static_cast<int>(std::min(units.right * 100 / kUsual.right, units.bottom * 100 / kUsual.bottom));
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
