#include "windows/dialogs/fields.h"

#include "gif/descriptor.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"

void EnableControl(HWND dialog, int id, bool enable) {
    EnableWindow(GetDlgItem(dialog, id), enable);
}

void ShowNumber(HWND dialog, int id, unsigned number) {
    SetDlgItemInt(dialog, id, number, FALSE);
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
