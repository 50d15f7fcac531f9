#include "windows/dialogs/select_colour.h"

#include "windows/dialogs/colour_grid_reader.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/drawing/screen_palette.h"

namespace {

constexpr int kColumns = 16;

// A click right of the last column picks the first cell of the next row.
constexpr bool kQuirkColumnsRunOn = true;

RECT gridArea;  // the picker's client rectangle, as it was when the dialog opened

int CellSize() {
    return (gridArea.right - gridArea.left) / kColumns;
}

// Makes the dialog higher or lower, so that the button comes right below the last row: with some fonts its place in the
// template would be over it.
void FitBelowGrid(HWND dialog, HWND button) {
    RECT place, window;
    GetWindowRect(button, &place);
    GetWindowRect(dialog, &window);
    POINT corner = {place.left, place.top};
    ScreenToClient(dialog, &corner);
    int rowsBottom = kPaletteEntries / kColumns * CellSize();
    int height = window.bottom - window.top + rowsBottom - corner.y;
    SetWindowPos(button, nullptr, corner.x, rowsBottom, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    SetWindowPos(dialog, nullptr, 0, 0, window.right - window.left, height, SWP_NOMOVE | SWP_NOZORDER);
}

bool ShowGrid(HWND dialog) {
    GetClientRect(dialog, &gridArea);
    FitBelowGrid(dialog, GetDlgItem(dialog, IDCANCEL));
    TellReadersOfGrid(dialog);
    return true;
}

void DrawCell(HDC dc, int index, RgbTriple colour) {
    OwnedGdiObject brush(CreateSolidBrush(RGB(colour.red, colour.green, colour.blue)));
    SavedDc saved(dc);
    SelectObject(dc, GetStockObject(BLACK_PEN));
    SelectObject(dc, brush.Get());
    int cell = CellSize(), x = index % kColumns * cell, y = index / kColumns * cell;
    Rectangle(dc, x, y, x + cell, y + cell);
}

INT_PTR OnPaint(HWND dialog) {
    const ColourRequest& request = *Edited<ColourRequest>(dialog);
    WindowPaint paint(dialog);
    // The count stands where a depth is expected, so that only tiny palettes are realised: on the screens of today
    // nothing else would be seen.
    ScreenPalette screen;
    RealizeImagePalette(paint.Dc(), request.palette, static_cast<int>(request.count), &screen);
    for (int i = 0; i < kPaletteEntries; ++i) DrawCell(paint.Dc(), i, request.palette[i]);
    ReleaseImagePalette(paint.Dc(), &screen);
    return TRUE;
}

INT_PTR OnClick(HWND dialog, int x, int y) {
    int cell = CellSize();
    if (cell == 0 || (!kQuirkColumnsRunOn && x >= kColumns * cell)) return TRUE;
    auto index = static_cast<uint32_t>(x / cell + kColumns * (y / cell));
    ColourRequest* request = Edited<ColourRequest>(dialog);
    if (index >= request->count) return TRUE;
    request->current = index;
    return EndDialog(dialog, IDOK);
}

INT_PTR OnGridMessage(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: return OnPaint(dialog);
        case WM_LBUTTONDOWN: return OnClick(dialog, LOWORD(lParam), HIWORD(lParam));
    }
    return FALSE;
}

constexpr DialogKind kColourPicker = {
    .templateName = L"SelectColourBox",
    .show = ShowGrid,
    .onMessage = OnGridMessage,
};

}  // namespace

bool SelectColour(HWND parent, const RgbTriple* palette, uint32_t count, uint32_t* current) {
    ColourRequest request = {palette, count, *current};
    if (!RunEditingDialog(parent, kColourPicker, &request)) return false;
    *current = request.current;
    return true;
}
