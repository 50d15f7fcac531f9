#include "windows/app/information_panel.h"

#include "windows/ids/panel_ids.h"
#include "windows/services/plain_dialog.h"
#include "windows/services/settings.h"

namespace {

void ShowBox(HWND dialog) {
    CheckDlgButton(dialog, IDC_SHOW_AGAIN, settings.showStartupBanner ? BST_CHECKED : BST_UNCHECKED);
}

void TakeBox(HWND dialog) {
    settings.showStartupBanner = IsDlgButtonChecked(dialog, IDC_SHOW_AGAIN) == BST_CHECKED;
}

}  // namespace

void ShowInformationPanel(HWND owner) {
    RunPlainDialog(owner, L"InformationPanel", ShowBox, TakeBox);
}
