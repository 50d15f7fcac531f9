#include "windows/app/information_panel.h"

#include "windows/app/line_colours.h"
#include "windows/ids/panel_ids.h"
#include "windows/services/plain_dialog.h"
#include "windows/services/settings.h"

namespace {

struct PanelBox {
    int id;
    uint32_t Settings::*value;
};

constexpr PanelBox kBoxes[] = {
    {IDC_SHOW_AGAIN, &Settings::showStartupBanner},
    {IDC_PANEL_CAREFUL_MODE, &Settings::carefulMode},
    {IDC_PANEL_READABLE_DETAILS, &Settings::readableDetails},
    {IDC_PANEL_PREVIEW, &Settings::preview},
    {IDC_PANEL_FILMSTRIP, &Settings::filmstrip},
};

constexpr wchar_t kFaintNote[] = L"In this system's colours the list's details are faint: Readable details helps.";

void ShowBoxes(HWND dialog) {
    for (const PanelBox& box : kBoxes)
        CheckDlgButton(dialog, box.id, settings.*box.value ? BST_CHECKED : BST_UNCHECKED);
    if (AreDetailsFaint()) SetDlgItemTextW(dialog, IDC_PANEL_FAINT_NOTE, kFaintNote);
}

void TakeBoxes(HWND dialog) {
    for (const PanelBox& box : kBoxes) settings.*box.value = IsDlgButtonChecked(dialog, box.id) == BST_CHECKED;
}

}  // namespace

void ShowInformationPanel(HWND owner) {
    RunPlainDialog(owner, L"InformationPanel", ShowBoxes, TakeBoxes);
}
