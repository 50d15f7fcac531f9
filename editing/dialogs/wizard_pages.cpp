#include "editing/dialogs/wizard_pages.h"

#include <initializer_list>

#include "editing/dialogs/edited_block.h"
#include "editing/dialogs/fields.h"
#include "resources/wizard_ids.h"

namespace {

constexpr int kPageIds = 100;
constexpr int kFewestFiles = 2;

BOOL CALLBACK ShowChildOfPage(HWND child, LPARAM firstId) {
    const int id = GetDlgCtrlID(child), first = static_cast<int>(firstId);
    if (id >= IDC_WIZARD_FIRST && id <= IDC_WIZARD_LAST)
        ShowWindow(child, id >= first && id < first + kPageIds ? SW_SHOW : SW_HIDE);
    return TRUE;
}

LRESULT FileCount(HWND dialog) {
    return SendDlgItemMessageW(dialog, IDC_WIZARD_FILES, LB_GETCOUNT, 0, 0);  // below 0 on an error
}

bool IsUsable(HWND control) {
    LONG style = GetWindowLongW(control, GWL_STYLE);
    return (style & WS_VISIBLE) && !(style & WS_DISABLED);
}

// A control that is hidden or disabled may have lost the focus to nobody already. Next comes first, so that Enter leads
// on; where it has to wait for files, Select does.
void KeepFocusUsable(HWND dialog) {
    HWND focus = GetFocus();
    if (focus && (!IsChild(dialog, focus) || IsUsable(focus))) return;
    for (int id : {IDC_WIZARD_NEXT, IDC_WIZARD_SELECT, static_cast<int>(IDCANCEL)}) {
        HWND control = GetDlgItem(dialog, id);
        if (!control || !IsUsable(control)) continue;
        SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
        return;
    }
}

}  // namespace

void EnableWizardButtons(HWND dialog) {
    const int page = Edited<Wizard>(dialog)->page;
    const LRESULT files = FileCount(dialog);
    EnableControl(dialog, IDC_WIZARD_BACK, page > 0);
    EnableControl(dialog, IDC_WIZARD_NEXT, page != kWizardFilesPage || files >= kFewestFiles);
    EnableControl(dialog, IDC_WIZARD_DELETE, files > 0);
    KeepFocusUsable(dialog);
}

void ShowWizardPage(HWND dialog) {
    const int page = Edited<Wizard>(dialog)->page;
    EnumChildWindows(dialog, ShowChildOfPage, page * kPageIds + IDC_WIZARD_FIRST);
    SetDlgItemTextW(dialog, IDC_WIZARD_NEXT, page < kWizardLastPage ? L"Next" : L"Done");
    EnableWizardButtons(dialog);
}
