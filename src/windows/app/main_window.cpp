#include "windows/app/main_window.h"

#include <algorithm>
#include <exception>
#include <initializer_list>

#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/app/document_commands.h"
#include "windows/app/edit_menu.h"
#include "windows/app/file_drop.h"
#include "windows/app/filmstrip.h"
#include "windows/app/line_drag.h"
#include "windows/app/notice_strip.h"
#include "windows/app/panes.h"
#include "windows/app/recent_files.h"
#include "windows/app/settings_file.h"
#include "windows/app/window_stops.h"
#include "windows/ids/command_ids.h"
#include "windows/ids/pane_ids.h"
#include "windows/services/careful.h"
#include "windows/services/dialogs.h"
#include "windows/services/dropped_files.h"
#include "windows/services/focus_handover.h"
#include "windows/services/help.h"
#include "windows/services/scaled_fonts.h"
#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"

namespace {

// The close box runs Exit and then closes the window in any case, also when the user cancelled Exit.
constexpr bool kQuirkCloseBoxIgnoresCancel = true;

// Too small a window is not prevented: it jumps back to its minimum size when it has been made so.
constexpr bool kQuirkMinimumSizeRestored = true;

LRESULT OnDestroy(HWND window) {
    WriteSettings(window, settingsFolder);
    ClosePanes(window);
    CloseHelp(window);
    ForgetDpi(window);
    PostQuitMessage(0);
    return 0;
}

constexpr UINT_PTR kSnapTimer = 1;
constexpr UINT kSnapMilliseconds = 100;
bool isSnapDue;  // the timer runs
bool isDragged;  // by the system itself; a window manager does not say so

// On a dense screen not more than all of it.
SIZE MinimumSize(HWND window) {
    const int dpi = DpiOf(window);
    SIZE size = {ScaledTo(dpi, kMinimumWidth), ScaledTo(dpi, kMinimumHeight)};
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (dpi > kUsualDpi && GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor)) {
        size.cx = std::min(size.cx, monitor.rcWork.right - monitor.rcWork.left);
        size.cy = std::min(size.cy, monitor.rcWork.bottom - monitor.rcWork.top);
    }
    return size;
}

void Resize(HWND window, int width, int height) {
    SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

LRESULT OnCreate(HWND window) {
    isSnapDue = isDragged = false;
    const SIZE size = MinimumSize(window);
    if (size.cx != kMinimumWidth || size.cy != kMinimumHeight) Resize(window, size.cx, size.cy);
    CentreWindow(window);
    return 0;
}

bool IsTooSmall(const RECT& place, SIZE smallest) {
    return place.right - place.left < smallest.cx || place.bottom - place.top < smallest.cy;
}

bool IsSmallest(const RECT& place, SIZE smallest) {
    return place.right - place.left == smallest.cx && place.bottom - place.top == smallest.cy;
}

void StopSnap(HWND window) {
    KillTimer(window, kSnapTimer);
    isSnapDue = false;
}

void SnapLater(HWND window) {
    if (!isSnapDue) isSnapDue = SetTimer(window, kSnapTimer, kSnapMilliseconds, nullptr) != 0;
}

void FitParts(HWND window) {
    FitBlockListView(window);
    FitNotice(window);
    FitPanes(window);
}

// Where a window manager made the window too small, Wine takes the minimum size for restored without asking for it:
// that has to wait until the message has been handled.
LRESULT OnSize(HWND window, WPARAM how) {
    if (how == SIZE_MINIMIZED) return 0;  // an icon has no size to keep
    RECT place = {};
    GetWindowRect(window, &place);
    const SIZE smallest = MinimumSize(window);
    if (!kQuirkMinimumSizeRestored || !IsTooSmall(place, smallest)) {
        if (!IsSmallest(place, smallest)) StopSnap(window);  // it has been made larger meanwhile
        return FitParts(window), 0;
    }
    MoveWindow(window, place.left, place.top, smallest.cx, smallest.cy, TRUE);
    SnapLater(window);
    return 0;
}

// Asks for the minimum size, first for another one, as this one is believed to be so already. Whoever still drags the
// edge may overrule it; we hear of that by being too small again.
LRESULT OnSnapTimer(HWND window) {
    StopSnap(window);
    if (isDragged || IsIconic(window) || IsZoomed(window)) return 0;
    const SIZE smallest = MinimumSize(window);
    for (int more : {1, 0}) Resize(window, smallest.cx + more, smallest.cy + more);
    return 0;
}

// The window has come to a screen of another density, or its screen has got another one.
LRESULT OnDpiChanged(HWND window, int dpi, const RECT& place) {
    NoteDpi(window, dpi);
    FitMainWindowToScreen(window);
    SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    if (!IsIconic(window)) FitParts(window);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    return 0;
}

LRESULT OnTimer(HWND window, WPARAM timer) {
    return timer == kSnapTimer ? OnSnapTimer(window) : 0;
}

// The system sizes a dragged window again at the next move of the mouse; the last size stands.
LRESULT OnDrag(HWND window, bool begins) {
    isDragged = begins;
    if (!begins && !IsIconic(window)) OnSize(window, SIZE_RESTORED);
    return 0;
}

LRESULT OnMouseActivate(HWND window, WPARAM wParam, LPARAM lParam) {
    NoteActivation(window, lParam);
    return DefWindowProcW(window, WM_MOUSEACTIVATE, wParam, lParam);
}

LRESULT OnActivate(HWND window, WPARAM wParam, LPARAM lParam) {
    const bool isLeft = LOWORD(wParam) == WA_INACTIVE;
    if (isLeft) KeepFocus(window);
    const LRESULT result = DefWindowProcW(window, WM_ACTIVATE, wParam, lParam);
    if (!isLeft) GiveFocusBack(window);
    return result;
}

LRESULT OnSysCommand(HWND window, WPARAM wParam, LPARAM lParam) {
    constexpr WPARAM kCommandBits = 0xFFF0;
    if ((wParam & kCommandBits) == SC_CLOSE) {
        SendMessageW(window, WM_COMMAND, IDM_EXIT, 0);
        if (!kQuirkCloseBoxIgnoresCancel || Careful(Care::kCloseBoxAsks)) return 0;
    }
    return DefWindowProcW(window, WM_SYSCOMMAND, wParam, lParam);
}

// Other programs close the window like this. While a dialog is open, what was typed there would be lost.
LRESULT OnCloseMessage(HWND window) {
    if (Careful(Care::kCloseBoxAsks) && !(IsWindowEnabled(window) && LeaveDocument(window))) return 0;
    return DefWindowProcW(window, WM_CLOSE, 0, 0);
}

// The session may yet go on: the document stays in any case.
LRESULT OnQueryEndSession(HWND window) {
    return !Careful(Care::kCloseBoxAsks) || (IsWindowEnabled(window) && AskToSave(window));
}

// Alt and the letter underlined on the notice strip's button, which the menu bar does not know.
LRESULT OnMenuCharacter(HWND window, WPARAM wParam, LPARAM lParam) {
    const bool isWhole = LOWORD(wParam) == L'w' || LOWORD(wParam) == L'W';
    if (!isWhole || reinterpret_cast<HMENU>(lParam) != GetMenu(window) || !NoticeOffersWhole(window))
        return DefWindowProcW(window, WM_MENUCHAR, wParam, lParam);
    PostMessageW(window, WM_COMMAND, IDM_OPEN_WHOLE, 0);
    return MAKELRESULT(0, MNC_CLOSE);
}

// The window itself has the focus until something in it gets it.
LRESULT OnKey(HWND window, WPARAM key, LPARAM lParam) {
    if (PressEditKey(window, key) || TakesStopKey(window, WM_KEYDOWN, key)) return 0;
    if (key == VK_ESCAPE) HideNotice(window);
    return DefWindowProcW(window, WM_KEYDOWN, key, lParam);
}

// Pressed with Alt. The system has to see it, or it opens the menu bar when Alt is let go.
LRESULT OnSystemKey(HWND window, WPARAM key, LPARAM lParam) {
    PressEditKey(window, key);
    return DefWindowProcW(window, WM_SYSKEYDOWN, key, lParam);
}

// A right click selects the line under it; the menu key asks for the menu of the line that is selected.
LRESULT OnContextMenu(HWND window, WPARAM wParam, LPARAM lParam) {
    if (reinterpret_cast<HWND>(wParam) != GetDlgItem(window, IDC_BLOCK_LIST))
        return DefWindowProcW(window, WM_CONTEXTMENU, wParam, lParam);
    constexpr LPARAM kByKey = -1;
    POINT place = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    const int line = lParam == kByKey ? SelectedLine(window) : LineAt(window, place);
    if (line == kNoLine) return 0;
    if (lParam == kByKey) {
        RevealLine(window, line);
        place = PlaceUnderLine(window, line);
    }
    SelectLine(window, line);
    OnCommand(window, IDC_BLOCK_LIST, LBN_SELCHANGE);
    ShowLineMenu(window, place);
    return 0;
}

LRESULT OnMenuOpens(HWND window, WPARAM wParam, LPARAM lParam) {
    UpdateEditMenu(window);
    return DefWindowProcW(window, WM_INITMENUPOPUP, wParam, lParam);
}

LRESULT OnDrawItem(WPARAM control, LPARAM lParam) {
    if (control == IDC_BLOCK_LIST) DrawBlockLine(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    if (control == IDC_FILMSTRIP) DrawFilmstripCell(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
    return 0;
}

LRESULT OnOpenFileMessage(HWND window, LPARAM lParam) {
    OnOpenFile(window, reinterpret_cast<const char*>(lParam));
    return 0;
}

LRESULT Dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE: return OnCreate(window);
        case WM_DESTROY: return OnDestroy(window);
        case WM_SIZE: return OnSize(window, wParam);
        case kDpiChanged: return OnDpiChanged(window, LOWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
        case WM_ACTIVATE: return OnActivate(window, wParam, lParam);
        case WM_MOUSEACTIVATE: return OnMouseActivate(window, wParam, lParam);
        case WM_TIMER: return OnTimer(window, wParam);
        case WM_ENTERSIZEMOVE:
        case WM_EXITSIZEMOVE: return OnDrag(window, message == WM_ENTERSIZEMOVE);
        case WM_CLOSE: return OnCloseMessage(window);
        case WM_QUERYENDSESSION: return OnQueryEndSession(window);
        case WM_INITMENUPOPUP: return OnMenuOpens(window, wParam, lParam);
        case WM_MENUCHAR: return OnMenuCharacter(window, wParam, lParam);
        case WM_KEYDOWN: return OnKey(window, wParam, lParam);
        case WM_SYSKEYDOWN: return OnSystemKey(window, wParam, lParam);
        case WM_CONTEXTMENU: return OnContextMenu(window, wParam, lParam);
        case WM_SYSCOMMAND: return OnSysCommand(window, wParam, lParam);
        case WM_DRAWITEM: return OnDrawItem(wParam, lParam);
        case WM_CTLCOLORMSGBOX:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORDLG:
        case WM_CTLCOLORSTATIC: return AnswerControlColour(message, wParam, lParam);
        case WM_COMMAND: return OnCommand(window, LOWORD(wParam), HIWORD(wParam));
        case UM_SHOW_PANES: return ShowPanes(window), 0;
        case WM_DROPFILES: return OnDropFiles(window, wParam);
        case UM_OPENFILE: return OnOpenFileMessage(window, lParam);
        default: return DefWindowProcW(window, message, wParam, lParam);
    }
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        return Dispatch(window, message, wParam, lParam);
    } catch (const std::exception&) {  // memory has run out; no exception may cross the system's code
        return 0;
    }
}

}  // namespace

void RegisterMainWindowClass() {
    WNDCLASSW description = {};
    description.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
    description.lpfnWndProc = MainWindowProc;
    description.hInstance = hInstance;
    description.hIcon = LoadIconW(hInstance, L"KLMZEP");
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hbrBackground = hFaceBrush;
    description.lpszMenuName = L"MainMenu";
    description.lpszClassName = kMainWindowClass;
    RegisterClassW(&description);
}

void FitMainWindowToScreen(HWND window) {
    hListFont = ListFontAt(DpiOf(window));
    SetChildFonts(window, hListFont, false);
    ScaleBlockListView(window);
    // The one of the class has the size for usual screens.
    if (DpiOf(window) != kUsualDpi || SendMessageW(window, WM_GETICON, ICON_SMALL, 0)) GiveProgramIcon(window);
}

void CreateMainWindow() {
    hMainWindow = CreateWindowExW(0, kMainWindowClass, L"Kelmor Zephyr", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                                  CW_USEDEFAULT, kMinimumWidth, kMinimumHeight, nullptr, nullptr, hInstance, nullptr);
    AddEditMenu(hMainWindow);
    CreateBlockListView(hMainWindow);
    PassEditKeys(GetDlgItem(hMainWindow, IDC_BLOCK_LIST));
    PassPaneKeys(GetDlgItem(hMainWindow, IDC_BLOCK_LIST));
    LetLinesBeDragged(GetDlgItem(hMainWindow, IDC_BLOCK_LIST));
    DragAcceptFiles(hMainWindow, TRUE);
    StartRecentFiles();
}
