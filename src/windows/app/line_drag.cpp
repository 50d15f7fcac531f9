#include "windows/app/line_drag.h"

#include <windowsx.h>

#include <algorithm>
#include <cstdlib>

#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/services/front_procedure.h"
#include "windows/services/screen_scale.h"

namespace {

constexpr UINT_PTR kScrollTimer = 0x4C44;
constexpr UINT kScrollMilliseconds = 60;
constexpr int kMarkHeight = 2;  // pixels of a usual screen

// The drag that is going on, or may begin.
struct LineDrag {
    int line = kNoLine;    // where the button was pressed, and has been held since
    LPARAM start = 0;      // and at what place
    bool isOn = false;     // the mouse has moved far enough
    int behind = kNoLine;  // the line behind which the mark is shown
};
LineDrag drag;

LRESULT CALLBACK DragProc(HWND list, UINT message, WPARAM wParam, LPARAM lParam);

LRESULT CallBelow(HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
    return CallBehind(DragProc, list, message, wParam, lParam);
}

int LineHeight(HWND list) {
    return std::max(static_cast<int>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0)), 1);
}

int TopLine(HWND list) {
    return static_cast<int>(SendMessageW(list, LB_GETTOPINDEX, 0, 0));
}

// The line behind which a block goes that is let go at this height: the nearer edge of the line there counts.
int LineBefore(HWND list, int y) {
    const int height = LineHeight(list), last = static_cast<int>(SendMessageW(list, LB_GETCOUNT, 0, 0)) - 1;
    const int edge = TopLine(list) + (y + height / 2) / height;
    return std::clamp(edge - 1, 0, last);
}

// Inverts the mark: shows it, or takes it away again.
void InvertMark(HWND list) {
    if (drag.behind == kNoLine) return;
    RECT client = {};
    GetClientRect(list, &client);
    const int y = (drag.behind + 1 - TopLine(list)) * LineHeight(list);
    const int half = ScaledFor(list, kMarkHeight) / 2;
    const RECT mark = {0, y - half, client.right, y + half};
    WindowDc dc(list);
    InvertRect(dc.Get(), &mark);
}

void MoveMark(HWND list, int behind) {
    if (behind == drag.behind) return;
    InvertMark(list);
    drag.behind = behind;
    InvertMark(list);
}

void ShowPlace(HWND list, int y) {
    const int behind = LineBefore(list, y);
    MoveMark(list, CanMoveLine(drag.line, behind) ? behind : kNoLine);
}

// The list selects no further lines, and has no timer of its own: for it the button is up.
void Begin(HWND list) {
    const int line = drag.line;
    CallBelow(list, WM_LBUTTONUP, 0, drag.start);
    drag.line = line;
    drag.isOn = true;
    SetCapture(list);
    SetTimer(list, kScrollTimer, kScrollMilliseconds, nullptr);
}

void End(HWND list) {
    if (!drag.isOn) return;
    MoveMark(list, kNoLine);
    drag = {};
    KillTimer(list, kScrollTimer);
    if (GetCapture() == list) ReleaseCapture();
}

bool OnMove(HWND list, WPARAM buttons, LPARAM place) {
    if (drag.line == kNoLine || !(buttons & MK_LBUTTON)) return false;
    if (!drag.isOn) {
        // Within its line a click may tremble.
        const int threshold = std::max(LineHeight(list) / 2, GetSystemMetrics(SM_CYDRAG));
        if (std::abs(GET_Y_LPARAM(place) - GET_Y_LPARAM(drag.start)) < threshold) return false;
        Begin(list);
    }
    SetCursor(LoadCursorW(nullptr, IDC_SIZENS));
    ShowPlace(list, GET_Y_LPARAM(place));
    return true;
}

// Above and below the list it scrolls.
bool OnScrollTimer(HWND list) {
    if (!drag.isOn) return false;
    POINT mouse = {};
    RECT client = {};
    GetCursorPos(&mouse);
    ScreenToClient(list, &mouse);
    GetClientRect(list, &client);
    const int step = mouse.y < 0 ? -1 : mouse.y >= client.bottom ? 1 : 0;
    const int top = TopLine(list) + step;
    if (step == 0 || top < 0) return true;
    MoveMark(list, kNoLine);
    CallBelow(list, LB_SETTOPINDEX, static_cast<WPARAM>(top), 0);
    UpdateWindow(list);
    ShowPlace(list, mouse.y);
    return true;
}

// Any other button and any key are for the drag alone; some of them end it.
bool OnBreak(HWND list, bool isEnd) {
    if (!drag.isOn) return false;
    if (isEnd) End(list);
    return true;
}

bool OnUp(HWND list, LPARAM place) {
    drag.line = drag.isOn ? drag.line : kNoLine;
    if (!drag.isOn) return false;
    const int line = drag.line, behind = LineBefore(list, GET_Y_LPARAM(place));
    End(list);
    if (CanMoveLine(line, behind)) MoveLine(GetParent(list), line, behind);
    return true;
}

void OnDown(HWND list, LPARAM place) {
    POINT point = {GET_X_LPARAM(place), GET_Y_LPARAM(place)};
    ClientToScreen(list, &point);
    drag = {};
    drag.line = LineAt(GetParent(list), point);
    drag.start = place;
}

// What is drawn under the mark must not take it for its own.
LRESULT OnPaint(HWND list, WPARAM wParam, LPARAM lParam) {
    const int behind = drag.behind;
    MoveMark(list, kNoLine);
    const LRESULT result = CallBelow(list, WM_PAINT, wParam, lParam);
    MoveMark(list, behind);
    return result;
}

// Whether the message was the drag's own.
bool TakeMessage(HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_MOUSEMOVE: return OnMove(list, wParam, lParam);
        case WM_LBUTTONUP: return OnUp(list, lParam);
        case WM_TIMER: return wParam == kScrollTimer && OnScrollTimer(list);
        case WM_RBUTTONDOWN: return OnBreak(list, true);
        case WM_KEYDOWN: return OnBreak(list, wParam == VK_ESCAPE);
        case WM_CAPTURECHANGED:
            if (reinterpret_cast<HWND>(lParam) != list) End(list);
            return false;
        default: return false;
    }
}

LRESULT CALLBACK DragProc(HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
    if (TakeMessage(list, message, wParam, lParam)) return 0;
    if (message == WM_PAINT) return OnPaint(list, wParam, lParam);
    const LRESULT result = CallBelow(list, message, wParam, lParam);
    if (message == WM_LBUTTONDOWN) OnDown(list, lParam);
    if (message == WM_NCDESTROY) drag = {};
    return result;
}

}  // namespace

void LetLinesBeDragged(HWND list) {
    PutInFront(list, DragProc);
}
