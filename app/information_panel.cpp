#include "app/information_panel.h"

#include "app/services/dialogs.h"
#include "app/services/settings.h"
#include "resources/panel_ids.h"

namespace {

void OnInitDialog(HWND dialog) {
    CheckDlgButton(dialog, IDC_SHOW_AGAIN, settings.showStartupBanner ? BST_CHECKED : BST_UNCHECKED);
    CentreWindow(dialog);
}

INT_PTR OnCommand(HWND dialog, int id) {
    if (id != IDOK && id != IDCANCEL) return FALSE;
    settings.showStartupBanner = IsDlgButtonChecked(dialog, IDC_SHOW_AGAIN) == BST_CHECKED;
    EndDialog(dialog, id);
    return TRUE;
}

INT_PTR CALLBACK PanelProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG: OnInitDialog(dialog); return TRUE;
        case WM_COMMAND: return OnCommand(dialog, LOWORD(wParam));
        default: return AnswerControlColour(message, wParam, lParam);
    }
}

}  // namespace

void ShowInformationPanel(HWND owner) {
    RunDialog(owner, L"InformationPanel", PanelProc, nullptr);
}
