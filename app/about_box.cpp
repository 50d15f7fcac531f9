#include "app/about_box.h"

#include <string>

#include "app/services/dialogs.h"
#include "platform/wide_text.h"
#include "resources/panel_ids.h"

namespace {

std::string VersionLine() {
    constexpr int kBits = sizeof(void*) * 8;
    return "Version " ZEPHYR_VERSION " (" + std::to_string(kBits) + "-bit)";
}

void OnInitDialog(HWND dialog) {
    SetDlgItemTextW(dialog, IDC_VERSION_LINE, WideFromUtf8(VersionLine()).c_str());
    SetDlgItemTextW(dialog, IDC_BUILD_LINE, WideFromUtf8("Build " ZEPHYR_BUILD).c_str());
    CentreWindow(dialog);
}

INT_PTR OnCommand(HWND dialog, int id) {
    if (id != IDOK && id != IDCANCEL) return FALSE;
    EndDialog(dialog, id);
    return TRUE;
}

INT_PTR CALLBACK AboutProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG: OnInitDialog(dialog); return TRUE;
        case WM_COMMAND: return OnCommand(dialog, LOWORD(wParam));
        default: return AnswerControlColour(message, wParam, lParam);
    }
}

}  // namespace

void ShowAboutBox(HWND owner) {
    RunDialog(owner, L"AboutBox", AboutProc, nullptr);
}
