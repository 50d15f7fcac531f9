#include "windows/dialogs/fields.h"

#include <cwchar>
#include <string_view>

#include "gif/descriptor.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"

namespace {

constexpr int kNumberUnits = 32;

}  // namespace

void EnableControl(HWND dialog, int id, bool enable) {
    EnableWindow(GetDlgItem(dialog, id), enable);
}

void ShowNumber(HWND dialog, int id, unsigned number) {
    SetDlgItemInt(dialog, id, number, FALSE);
}

// The system's own reading of numbers stops at a letter and is content.
bool HoldsNumber(HWND dialog, int id) {
    wchar_t text[kNumberUnits];
    const UINT units = GetDlgItemTextW(dialog, id, text, kNumberUnits);
    const std::wstring_view digits(text, units);
    if (units == 0 || units == kNumberUnits - 1) return false;  // the text may go on
    return digits.find_first_not_of(L"0123456789") == std::wstring_view::npos &&
           wcstoul(text, nullptr, 10) <= kMostInField;
}

uint16_t TakeNumber(HWND dialog, int id) {
    return static_cast<uint16_t>(GetDlgItemInt(dialog, id, nullptr, FALSE));
}

void ShowCheck(HWND dialog, int id, bool checked) {
    CheckDlgButton(dialog, id, checked ? BST_CHECKED : BST_UNCHECKED);
}

bool TakeCheck(HWND dialog, int id) {
    return IsDlgButtonChecked(dialog, id) == BST_CHECKED;
}

uint8_t TakeFlag(HWND dialog, int id, uint8_t packed, uint8_t mask) {
    return static_cast<uint8_t>(TakeCheck(dialog, id) ? packed | mask : packed & ~mask);
}

void ShowColourCount(HWND dialog, int id, uint8_t packed) {
    const std::string text = FormatStr(IDS_COLOUR_COUNT, static_cast<unsigned>(ColoursOfPacked(packed)));
    SetDlgItemTextW(dialog, id, WideFrom1252(text).c_str());
}
