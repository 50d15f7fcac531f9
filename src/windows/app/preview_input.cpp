#include "windows/app/preview_input.h"

#include <windowsx.h>

#include <cstdlib>

#include "windows/app/preview_state.h"
#include "windows/services/screen_scale.h"

namespace {

constexpr int kKeyStep = 16;  // pixels of a usual screen that an arrow key moves the canvas
constexpr int kMenuGap = 4;   // pixels, between the corner and the menu that a key opens

POINT MiddleOf(HWND pane) {
    RECT client = {};
    GetClientRect(pane, &client);
    return {client.right / 2, (client.bottom - PreviewTextHeight(pane)) / 2};
}

LRESULT ZoomAt(HWND pane, bool nearer, POINT at) {
    StateOfPreview(pane)->view.StepNearer(nearer, at);
    RedrawPreview(pane);
    return 0;
}

LRESULT OnWheel(HWND pane, int turned, POINT at) {
    ScreenToClient(pane, &at);
    int& sum = StateOfPreview(pane)->wheelTurned;
    for (sum += turned; std::abs(sum) >= WHEEL_DELTA; sum -= sum > 0 ? WHEEL_DELTA : -WHEEL_DELTA)
        ZoomAt(pane, sum > 0, at);
    return 0;
}

LRESULT MoveCanvas(HWND pane, int x, int y) {
    StateOfPreview(pane)->view.MoveBy(x, y);
    RedrawPreview(pane);
    return 0;
}

LRESULT MoveByKey(HWND pane, int x, int y) {
    const int step = ScaledFor(pane, kKeyStep);
    return MoveCanvas(pane, x * step, y * step);
}

LRESULT ShowWhole(HWND pane) {
    StateOfPreview(pane)->view.Fit();
    RedrawPreview(pane);
    return 0;
}

// By the menu key it opens in the corner.
LRESULT ShowPaneMenu(HWND pane, LPARAM lParam) {
    constexpr UINT_PTR kPrices = 1;
    constexpr LPARAM kByKey = -1;
    POINT place = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    if (lParam == kByKey) {
        place = {kMenuGap, kMenuGap};
        ClientToScreen(pane, &place);
    }
    HMENU menu = CreatePopupMenu();
    if (!menu) return 0;
    const UINT state = StateOfPreview(pane)->showsPrices ? UINT{MF_CHECKED} : UINT{MF_UNCHECKED};
    AppendMenuW(menu, MF_STRING | state, kPrices, L"&Prices of pixels\tP");
    const BOOL chosen = TrackPopupMenu(menu, TPM_RIGHTBUTTON | TPM_RETURNCMD, place.x, place.y, 0, pane, nullptr);
    DestroyMenu(menu);
    return chosen ? (SwitchPreviewPrices(pane), 0) : 0;
}

LRESULT StepFrame(HWND pane, int step) {
    const Preview& preview = *StateOfPreview(pane);
    const int frame = preview.frame + step;
    if (preview.frame >= 0 && frame >= 0 && frame < static_cast<int>(preview.played->FrameCount()))
        ChoosePreviewFrame(pane, frame);
    return 0;
}

LRESULT OnKey(HWND pane, WPARAM key) {
    switch (key) {
        case VK_ADD:
        case VK_OEM_PLUS: return ZoomAt(pane, true, MiddleOf(pane));
        case VK_SUBTRACT:
        case VK_OEM_MINUS: return ZoomAt(pane, false, MiddleOf(pane));
        case '0':
        case VK_NUMPAD0: return ShowWhole(pane);
        case VK_LEFT: return MoveByKey(pane, 1, 0);
        case VK_RIGHT: return MoveByKey(pane, -1, 0);
        case VK_UP: return MoveByKey(pane, 0, 1);
        case VK_DOWN: return MoveByKey(pane, 0, -1);
        case VK_PRIOR: return StepFrame(pane, -1);
        case VK_NEXT: return StepFrame(pane, 1);
        case 'P': return SwitchPreviewPrices(pane), 0;
        default: return 0;
    }
}

LRESULT OnButtonDown(HWND pane, POINT at) {
    SetFocus(pane);
    SetCapture(pane);
    StateOfPreview(pane)->isDragged = true;
    StateOfPreview(pane)->dragged = at;
    return 0;
}

LRESULT OnMouseMove(HWND pane, POINT at) {
    Preview& preview = *StateOfPreview(pane);
    if (!preview.isDragged) return 0;
    MoveCanvas(pane, at.x - preview.dragged.x, at.y - preview.dragged.y);
    preview.dragged = at;
    return 0;
}

LRESULT OnCaptureGone(HWND pane) {
    StateOfPreview(pane)->isDragged = false;
    return 0;
}

}  // namespace

LRESULT OnPreviewInput(HWND pane, UINT message, WPARAM wParam, LPARAM lParam) {
    const POINT at = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    switch (message) {
        case WM_KEYDOWN: return OnKey(pane, wParam);
        case WM_MOUSEWHEEL: return OnWheel(pane, GET_WHEEL_DELTA_WPARAM(wParam), at);
        case WM_CONTEXTMENU: return ShowPaneMenu(pane, lParam);
        case WM_LBUTTONDOWN: return OnButtonDown(pane, at);
        case WM_MOUSEMOVE: return OnMouseMove(pane, at);
        case WM_LBUTTONUP: return ReleaseCapture(), 0;
        case WM_CAPTURECHANGED: return OnCaptureGone(pane);
        default: return DefWindowProcW(pane, message, wParam, lParam);
    }
}
