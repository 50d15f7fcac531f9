#include "windows/dialogs/colour_grid.h"

#include <windowsx.h>

#include <algorithm>

#include "windows/dialogs/edited_block.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/drawing/screen_palette.h"
#include "windows/ids/editor_ids.h"
#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"

namespace {

constexpr wchar_t kGridClass[] = L"KLM ZephyrColours";

void DrawCell(HDC dc, int index, RgbTriple colour, int cell) {
    OwnedGdiObject brush(CreateSolidBrush(RGB(colour.red, colour.green, colour.blue)));
    SavedDc saved(dc);
    SelectObject(dc, GetStockObject(BLACK_PEN));
    SelectObject(dc, brush.Get());
    int x = index % kGridColumns * cell, y = index / kGridColumns * cell;
    Rectangle(dc, x, y, x + cell, y + cell);
}

const ColourRequest& RequestOf(HWND grid) {
    return *Edited<const ColourRequest>(GetParent(grid));
}

int CellOf(HWND grid) {
    RECT client = {};
    GetClientRect(grid, &client);
    return client.right / kGridColumns;
}

void DrawFrame(HDC dc, RECT* frame, int thickness, int colour) {
    for (int i = 0; i < thickness; ++i) {
        FrameRect(dc, frame, static_cast<HBRUSH>(GetStockObject(colour)));
        InflateRect(frame, -1, -1);
    }
}

// White between two lines of black, so that it is seen on every colour and between all neighbours. It is thinner while
// the keys go elsewhere.
void DrawMark(HWND grid, HDC dc, int index, int cell) {
    const int line = ScaledFor(grid, 1), x = index % kGridColumns * cell, y = index / kGridColumns * cell;
    RECT frame = {x - line, y - line, x + cell + line, y + cell + line};
    DrawFrame(dc, &frame, line, BLACK_BRUSH);
    DrawFrame(dc, &frame, GetFocus() == grid ? 2 * line : line, WHITE_BRUSH);
    DrawFrame(dc, &frame, line, BLACK_BRUSH);
}

void DrawGrid(HWND grid, HDC dc) {
    const int cell = CellOf(grid);
    DrawColourCells(dc, RequestOf(grid), cell);
    DrawMark(grid, dc, static_cast<int>(MarkedColour(grid)), cell);
}

LRESULT Choose(HWND grid) {
    SendMessageW(GetParent(grid), WM_COMMAND, MAKEWPARAM(IDC_COLOUR_GRID, BN_CLICKED), reinterpret_cast<LPARAM>(grid));
    return 0;
}

LRESULT MoveTo(HWND grid, int64_t index) {
    if (index >= 0 && index < RequestOf(grid).count) MarkColour(grid, static_cast<uint32_t>(index));
    return 0;
}

LRESULT OnKey(HWND grid, WPARAM key) {
    const int64_t marked = MarkedColour(grid), last = int64_t{RequestOf(grid).count} - 1;
    switch (key) {
        case VK_LEFT: return MoveTo(grid, marked - 1);
        case VK_RIGHT: return MoveTo(grid, marked + 1);
        case VK_UP: return MoveTo(grid, marked - kGridColumns);
        case VK_DOWN: return MoveTo(grid, marked + kGridColumns);
        case VK_HOME: return MoveTo(grid, 0);
        case VK_END: return MoveTo(grid, last);
        case VK_SPACE:
        case VK_RETURN: return Choose(grid);
        default: return 0;
    }
}

LRESULT OnClick(HWND grid, POINT at) {
    const int cell = std::max(CellOf(grid), 1);
    const int64_t column = at.x / cell, row = at.y / cell, index = row * kGridColumns + column;
    if (index >= RequestOf(grid).count) return 0;
    MarkColour(grid, static_cast<uint32_t>(index));
    return Choose(grid);
}

LRESULT OnPaint(HWND grid) {
    const WindowPaint paint(grid);
    DrawGrid(grid, paint.Dc());
    return 0;
}

// The dialog would press its button with Enter, and move the focus with arrow keys.
LRESULT WantedKeys(const MSG* message) {
    return message && message->message == WM_KEYDOWN && message->wParam == VK_RETURN ? DLGC_WANTALLKEYS
                                                                                     : DLGC_WANTARROWS;
}

LRESULT CALLBACK GridProc(HWND grid, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: return OnPaint(grid);
        case WM_ERASEBKGND: return 1;
        case WM_GETDLGCODE: return WantedKeys(reinterpret_cast<const MSG*>(lParam));
        case WM_KEYDOWN: return OnKey(grid, wParam);
        case WM_LBUTTONDOWN: return OnClick(grid, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        case WM_SETFOCUS:
        case WM_KILLFOCUS: return InvalidateRect(grid, nullptr, FALSE), 0;
        default: return DefWindowProcW(grid, message, wParam, lParam);
    }
}

void RegisterGridClass() {
    WNDCLASSW about = {};
    about.lpfnWndProc = GridProc;
    about.hInstance = hInstance;
    about.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    about.lpszClassName = kGridClass;
    RegisterClassW(&about);  // answers 0 from the second time on
}

}  // namespace

void DrawColourCells(HDC dc, const ColourRequest& request, int cell) {
    // The count stands where a depth is expected, so that only tiny palettes are realised: on the screens of today
    // nothing else would be seen.
    ScreenPalette screen;
    RealizeImagePalette(dc, request.palette, static_cast<int>(request.count), &screen);
    for (int i = 0; i < kPaletteEntries; ++i) DrawCell(dc, i, request.palette[i], cell);
    ReleaseImagePalette(dc, &screen);
}

HWND CreateColourGrid(HWND dialog) {
    RegisterGridClass();
    HWND grid = CreateWindowExW(0, kGridClass, L"Colours", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, 0, 0, dialog,
                                reinterpret_cast<HMENU>(UINT_PTR{IDC_COLOUR_GRID}), hInstance, nullptr);
    if (!grid) return nullptr;
    SetWindowPos(grid, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    const ColourRequest& request = RequestOf(grid);
    MarkColour(grid, std::min(request.current, std::max(request.count, 1U) - 1));
    return grid;
}

void FitColourGrid(HWND grid, int cell) {
    const int size = kGridColumns * cell;
    MoveWindow(grid, 0, 0, size, size, TRUE);
}

void MarkColour(HWND grid, uint32_t index) {
    SetWindowLongPtrW(grid, GWLP_USERDATA, static_cast<LONG_PTR>(index));
    const auto cell = static_cast<LONG>(index) + 1;
    NotifyWinEvent(EVENT_OBJECT_FOCUS, grid, OBJID_CLIENT, cell);
    NotifyWinEvent(EVENT_OBJECT_SELECTION, grid, OBJID_CLIENT, cell);
    InvalidateRect(grid, nullptr, FALSE);
}

uint32_t MarkedColour(HWND grid) {
    return static_cast<uint32_t>(GetWindowLongPtrW(grid, GWLP_USERDATA));
}
