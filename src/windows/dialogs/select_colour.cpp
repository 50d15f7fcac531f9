#include "windows/dialogs/select_colour.h"

#include "windows/dialogs/colour_grid.h"
#include "windows/dialogs/colour_grid_reader.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/ids/editor_ids.h"
#include "windows/services/careful.h"
#include "windows/services/screen_scale.h"

namespace {

constexpr int kUsualCell = 12, kUsualButtonHeight = 32;  // pixels of a usual screen

// A click right of the last column picks the first cell of the next row.
constexpr bool kQuirkColumnsRunOn = true;

RECT gridArea;  // the picker's client rectangle, as it was when the dialog opened

// The control of careful mode; null without it.
HWND GridOf(HWND dialog) {
    return GetDlgItem(dialog, IDC_COLOUR_GRID);
}

int CellSize() {
    return (gridArea.right - gridArea.left) / kGridColumns;
}

// Makes the dialog higher or lower, so that the button comes right below the last row: with some fonts its place in the
// template would be over it.
void FitBelowGrid(HWND dialog, HWND button) {
    RECT place, window;
    GetWindowRect(button, &place);
    GetWindowRect(dialog, &window);
    POINT corner = {place.left, place.top};
    ScreenToClient(dialog, &corner);
    int rowsBottom = kPaletteEntries / kGridColumns * CellSize();
    int height = window.bottom - window.top + rowsBottom - corner.y;
    SetWindowPos(button, nullptr, corner.x, rowsBottom, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    SetWindowPos(dialog, nullptr, 0, 0, window.right - window.left, height, SWP_NOMOVE | SWP_NOZORDER);
}

// On other screens than usual ones the template's units need not be squares: all is laid out anew.
void FitToScreen(HWND dialog, HWND button) {
    const int width = kGridColumns * ScaledFor(dialog, kUsualCell),
              buttonHeight = ScaledFor(dialog, kUsualButtonHeight);
    RECT client = {}, window = {};
    GetClientRect(dialog, &client);
    GetWindowRect(dialog, &window);
    const int frameWidth = window.right - window.left - client.right,
              frameHeight = window.bottom - window.top - client.bottom;
    SetWindowPos(dialog, nullptr, 0, 0, width + frameWidth, width + buttonHeight + frameHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    SetWindowPos(button, nullptr, 0, width, width, buttonHeight, SWP_NOZORDER);
    GetClientRect(dialog, &gridArea);
    if (HWND grid = GridOf(dialog)) FitColourGrid(grid, CellSize());
}

bool ShowGrid(HWND dialog) {
    HWND button = GetDlgItem(dialog, IDCANCEL);
    GetClientRect(dialog, &gridArea);
    DpiOf(dialog) == kUsualDpi ? FitBelowGrid(dialog, button) : FitToScreen(dialog, button);
    if (!Careful(Care::kColourGridTakesKeys)) {
        TellReadersOfGrid(dialog);
        return true;
    }
    HWND grid = CreateColourGrid(dialog);
    if (!grid) return false;
    TellReadersOfGrid(grid);
    FitColourGrid(grid, CellSize());
    PostMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(grid), TRUE);  // when the dialog has come up
    return true;
}

INT_PTR OnPaint(HWND dialog) {
    WindowPaint paint(dialog);
    if (!GridOf(dialog)) DrawColourCells(paint.Dc(), *Edited<ColourRequest>(dialog), CellSize());
    return TRUE;
}

INT_PTR OnClick(HWND dialog, int x, int y) {
    int cell = CellSize();
    if (cell == 0 || (!kQuirkColumnsRunOn && x >= kGridColumns * cell)) return TRUE;
    auto index = static_cast<uint32_t>(x / cell + kGridColumns * (y / cell));
    ColourRequest* request = Edited<ColourRequest>(dialog);
    if (index >= request->count) return TRUE;
    request->current = index;
    return EndDialog(dialog, IDOK);
}

bool OnChoice(HWND dialog, int id) {
    if (id != IDC_COLOUR_GRID) return false;
    const uint32_t index = MarkedColour(GridOf(dialog));
    ColourRequest* request = Edited<ColourRequest>(dialog);
    if (index >= request->count) return true;
    request->current = index;
    EndDialog(dialog, IDOK);
    return true;
}

INT_PTR OnGridMessage(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: return OnPaint(dialog);
        case UM_RESCALED: return FitToScreen(dialog, GetDlgItem(dialog, IDCANCEL)), TRUE;
        case WM_LBUTTONDOWN: return OnClick(dialog, LOWORD(lParam), HIWORD(lParam));
    }
    return FALSE;
}

constexpr DialogKind kColourPicker = {
    .templateName = L"SelectColourBox",
    .show = ShowGrid,
    .onClick = OnChoice,
    .onMessage = OnGridMessage,
};

}  // namespace

bool SelectColour(HWND parent, const RgbTriple* palette, uint32_t count, uint32_t* current) {
    ColourRequest request = {palette, count, *current};
    if (!RunEditingDialog(parent, kColourPicker, &request)) return false;
    *current = request.current;
    return true;
}
