#include "windows/app/notice_strip.h"

#include <algorithm>

#include "platform/wide_text_win32.h"
#include "windows/app/window_stops.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/ids/command_ids.h"
#include "windows/ids/notice_ids.h"
#include "windows/services/front_procedure.h"
#include "windows/services/screen_reader.h"
#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"

namespace {

constexpr wchar_t kStripClass[] = L"KLM ZephyrNotice";
constexpr wchar_t kWholeCaption[] = L"Open it &whole";
// Pixels of a usual screen.
constexpr int kGap = 6;  // around the text and the buttons
constexpr int kButtonHeight = 20;
constexpr int kWholeWidth = 84;
constexpr int kCloseWidth = 20;

HWND StripOf(HWND window) {
    return GetDlgItem(window, IDC_NOTICE);
}

HWND ListOf(HWND window) {
    return GetDlgItem(window, IDC_BLOCK_LIST);
}

// The commands are posted: they take the strip away, and its buttons are still at work.
LRESULT OnButton(HWND strip, int id) {
    const int command = id == IDC_NOTICE_WHOLE ? IDM_OPEN_WHOLE : id == IDC_NOTICE_CLOSE ? IDM_CLOSE_NOTICE : 0;
    if (command) PostMessageW(GetParent(strip), WM_COMMAND, static_cast<WPARAM>(command), 0);
    return 0;
}

LRESULT ColourText(HDC dc) {
    SetBkColor(dc, GetSysColor(COLOR_INFOBK));
    SetTextColor(dc, GetSysColor(COLOR_INFOTEXT));
    return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_INFOBK));
}

LRESULT CALLBACK StripProc(HWND strip, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND: return OnButton(strip, LOWORD(wParam));
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORSTATIC: return ColourText(reinterpret_cast<HDC>(wParam));
        default: return DefWindowProcW(strip, message, wParam, lParam);
    }
}

void RegisterStripClass() {
    WNDCLASSW about = {};
    about.lpfnWndProc = StripProc;
    about.hInstance = hInstance;
    about.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    about.hbrBackground = reinterpret_cast<HBRUSH>(UINT_PTR{COLOR_INFOBK + 1});
    about.lpszClassName = kStripClass;
    RegisterClassW(&about);  // answers 0 from the second time on
}

// The window procedure of the list and of the strip's buttons as long as there is a strip: Escape, which they do
// nothing with, takes it away. Posted, as they are still at work. While the mouse drags something there, Escape ends
// that.
LRESULT CALLBACK EscapeProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_KEYDOWN && wParam == VK_ESCAPE && GetCapture() != control)
        return PostMessageW(GetAncestor(control, GA_ROOT), WM_COMMAND, IDM_CLOSE_NOTICE, 0), 0;
    auto own = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(control, GWLP_USERDATA));
    return CallWindowProcW(own, control, message, wParam, lParam);
}

void TakeEscape(HWND control) {
    SetWindowLongPtrW(control, GWLP_USERDATA, GetWindowLongPtrW(control, GWLP_WNDPROC));
    SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(EscapeProc));
}

void LeaveEscape(HWND control) {
    SetWindowLongPtrW(control, GWLP_WNDPROC, GetWindowLongPtrW(control, GWLP_USERDATA));
    SetWindowLongPtrW(control, GWLP_USERDATA, 0);
}

HWND AddControl(HWND strip, const wchar_t* kind, const wchar_t* text, int id, DWORD style) {
    HWND control = CreateWindowExW(0, kind, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, strip,
                                   reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), hInstance, nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(hListFont), FALSE);
    return control;
}

std::wstring NoticeText(HWND strip) {
    wchar_t text[512] = L"";
    GetDlgItemTextW(strip, IDC_NOTICE_TEXT, text, 512);
    return text;
}

// What a dialog does for its buttons: Enter presses the one that has the focus, Tab goes on.
LRESULT CALLBACK ButtonKeysProc(HWND button, UINT message, WPARAM wParam, LPARAM lParam) {
    if (TakesStopKey(GetAncestor(button, GA_ROOT), message, wParam)) return 0;
    if (message == WM_KEYDOWN && wParam == VK_RETURN) return SendMessageW(button, BM_CLICK, 0, 0);
    return CallBehind(ButtonKeysProc, button, message, wParam, lParam);
}

void AddButton(HWND strip, const wchar_t* caption, int id) {
    HWND button = AddControl(strip, L"BUTTON", caption, id, BS_PUSHBUTTON | WS_TABSTOP);
    if (!button) return;
    TakeEscape(button);
    PutInFront(button, ButtonKeysProc);
}

constexpr ReadWindow kReadStrip = {NoticeText, ROLE_SYSTEM_ALERT};
constexpr ReadWindow kReadClose = {[](HWND) -> std::wstring { return L"Close this notice"; }};

// The list must not draw where the strip lies, which is so only as long as there is one.
void ClipList(HWND window, bool clips) {
    const LONG_PTR style = GetWindowLongPtrW(ListOf(window), GWL_STYLE);
    const LONG_PTR wanted = clips ? style | WS_CLIPSIBLINGS : style & ~LONG_PTR{WS_CLIPSIBLINGS};
    SetWindowLongPtrW(ListOf(window), GWL_STYLE, wanted);
}

// The height in pixels of the strip's text, broken into lines of that width.
int TextHeight(HWND strip, int width) {
    const std::wstring text = NoticeText(strip);
    WindowDc dc(strip);
    SelectedObject font(dc.Get(), hListFont);
    RECT place = {0, 0, width, 0};
    DrawTextW(dc.Get(), text.c_str(), -1, &place, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    return place.bottom;
}

void Place(HWND strip, int id, int left, int top, int width, int height) {
    if (HWND control = GetDlgItem(strip, id)) MoveWindow(control, left, top, width, height, TRUE);
}

RECT PlaceOfList(HWND window) {
    RECT place = {};
    GetWindowRect(ListOf(window), &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

}  // namespace

void ShowNotice(HWND window, const std::string& text, bool offersWhole) {
    HideNotice(window);
    RegisterStripClass();
    HWND strip = CreateWindowExW(0, kStripClass, L"", WS_CHILD | WS_BORDER | WS_CLIPSIBLINGS | WS_CLIPCHILDREN, 0, 0, 0,
                                 0, window, reinterpret_cast<HMENU>(UINT_PTR{IDC_NOTICE}), hInstance, nullptr);
    if (!strip) return;
    AddControl(strip, L"STATIC", WideFrom1252(text).c_str(), IDC_NOTICE_TEXT, SS_LEFT | SS_NOPREFIX);
    if (offersWhole) AddButton(strip, kWholeCaption, IDC_NOTICE_WHOLE);
    AddButton(strip, L"x", IDC_NOTICE_CLOSE);
    TellReaders(strip, kReadStrip);
    TellReaders(GetDlgItem(strip, IDC_NOTICE_CLOSE), kReadClose);
    ClipList(window, true);
    TakeEscape(ListOf(window));
    FitNotice(window);
    ShowWindow(strip, SW_SHOWNA);
    NotifyWinEvent(EVENT_SYSTEM_ALERT, strip, OBJID_CLIENT, CHILDID_SELF);  // which readers say aloud
}

void HideNotice(HWND window) {
    HWND strip = StripOf(window);
    if (!strip) return;
    if (IsChild(strip, GetFocus())) SetFocus(ListOf(window));
    DestroyWindow(strip);
    ClipList(window, false);
    LeaveEscape(ListOf(window));
}

void FitNotice(HWND window) {
    HWND strip = StripOf(window);
    if (!strip) return;
    const RECT list = PlaceOfList(window);
    const int dpi = DpiOf(window), gap = ScaledTo(dpi, kGap), buttonHeight = ScaledTo(dpi, kButtonHeight);
    const int closeWidth = ScaledTo(dpi, kCloseWidth), wholeWidth = ScaledTo(dpi, kWholeWidth);
    const int width = list.right - list.left, border = GetSystemMetrics(SM_CXBORDER);
    const int closeLeft = width - 2 * border - gap - closeWidth;
    const int wholeLeft = NoticeOffersWhole(window) ? closeLeft - gap - wholeWidth : closeLeft;
    const int textWidth = std::max(wholeLeft - 2 * gap, 1);
    const int textHeight = TextHeight(strip, textWidth);
    const int inner = std::max(textHeight, buttonHeight) + 2 * gap, height = inner + 2 * border;
    SetWindowPos(strip, HWND_TOP, list.left, list.bottom - height, width, height, SWP_NOACTIVATE);
    Place(strip, IDC_NOTICE_TEXT, gap, (inner - textHeight) / 2, textWidth, textHeight);
    Place(strip, IDC_NOTICE_WHOLE, wholeLeft, (inner - buttonHeight) / 2, wholeWidth, buttonHeight);
    Place(strip, IDC_NOTICE_CLOSE, closeLeft, (inner - buttonHeight) / 2, closeWidth, buttonHeight);
}

bool NoticeOffersWhole(HWND window) {
    HWND strip = StripOf(window);
    return strip && GetDlgItem(strip, IDC_NOTICE_WHOLE);
}
