#include "windows/dialogs/colour_grid_reader.h"

#include "windows/dialogs/colour_grid.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/select_colour.h"
#include "windows/services/screen_reader.h"

namespace {

bool IsControl(HWND window) {
    return (GetWindowLongW(window, GWL_STYLE) & WS_CHILD) != 0;
}

ColourRequest& RequestOf(HWND window) {
    return *Edited<ColourRequest>(IsControl(window) ? GetParent(window) : window);
}

int CountCells(HWND window) {
    return static_cast<int>(RequestOf(window).count);
}

std::wstring ReadCell(HWND window, int cell) {
    return DescribeColour(static_cast<unsigned>(cell), RequestOf(window).palette[cell]);
}

RECT PlaceOfCell(HWND window, int cell) {
    RECT client = {};
    GetClientRect(window, &client);
    const LONG size = client.right / kGridColumns, left = cell % kGridColumns * size, top = cell / kGridColumns * size;
    return {left, top, left + size, top + size};
}

int SelectedCell(HWND window) {
    return static_cast<int>(IsControl(window) ? MarkedColour(window) : RequestOf(window).current);
}

void SelectCell(HWND window, int cell) {
    if (IsControl(window)) return MarkColour(window, static_cast<uint32_t>(cell));
    RequestOf(window).current = static_cast<uint32_t>(cell);
    InvalidateRect(window, nullptr, FALSE);
}

void ChooseCell(HWND window, int cell) {
    const RECT place = PlaceOfCell(window, cell);
    PostMessageW(window, WM_LBUTTONDOWN, 0, MAKELPARAM(place.left + 1, place.top + 1));
}

constexpr ReadItems kReadCells = {
    .role = ROLE_SYSTEM_CELL,
    .count = CountCells,
    .name = ReadCell,
    .place = PlaceOfCell,
    .selected = SelectedCell,
    .select = SelectCell,
    .action = L"Choose",
    .act = ChooseCell,
};
constexpr ReadWindow kReadGrid = {[](HWND) -> std::wstring { return L"Choose a colour"; }, 0, &kReadCells};

}  // namespace

std::wstring DescribeColour(unsigned index, RgbTriple colour) {
    return L"colour " + std::to_wstring(index) + L", red " + std::to_wstring(colour.red) + L", green " +
           std::to_wstring(colour.green) + L", blue " + std::to_wstring(colour.blue);
}

void TellReadersOfGrid(HWND window) {
    TellReaders(window, kReadGrid);
}
