#include "windows/dialogs/colour_grid_reader.h"

#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/select_colour.h"
#include "windows/services/screen_reader.h"

namespace {

constexpr int kColumns = 16;

int CountCells(HWND dialog) {
    return static_cast<int>(Edited<ColourRequest>(dialog)->count);
}

std::wstring ReadCell(HWND dialog, int cell) {
    return DescribeColour(static_cast<unsigned>(cell), Edited<ColourRequest>(dialog)->palette[cell]);
}

RECT PlaceOfCell(HWND dialog, int cell) {
    RECT client = {};
    GetClientRect(dialog, &client);
    const LONG size = client.right / kColumns, left = cell % kColumns * size, top = cell / kColumns * size;
    return {left, top, left + size, top + size};
}

int SelectedCell(HWND dialog) {
    return static_cast<int>(Edited<ColourRequest>(dialog)->current);
}

void SelectCell(HWND dialog, int cell) {
    Edited<ColourRequest>(dialog)->current = static_cast<uint32_t>(cell);
    InvalidateRect(dialog, nullptr, FALSE);
}

void ChooseCell(HWND dialog, int cell) {
    const RECT place = PlaceOfCell(dialog, cell);
    PostMessageW(dialog, WM_LBUTTONDOWN, 0, MAKELPARAM(place.left + 1, place.top + 1));
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

void TellReadersOfGrid(HWND dialog) {
    TellReaders(dialog, kReadGrid);
}
