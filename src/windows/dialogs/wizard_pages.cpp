#include "windows/dialogs/wizard_pages.h"

#include <initializer_list>

#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/ids/wizard_ids.h"

namespace {

constexpr int kPageIds = 100;
constexpr int kFewestFiles = 2;

// What a page has or leaves to the others; the buttons below the pages are of every page.
bool IsOfPage(HWND control, int page) {
    const int id = GetDlgCtrlID(control), first = page * kPageIds + IDC_WIZARD_FIRST;
    return id < IDC_WIZARD_FIRST || id > IDC_WIZARD_LAST || (id >= first && id < first + kPageIds);
}

BOOL CALLBACK ShowIfOfPage(HWND child, LPARAM page) {
    if (IsOfPage(child, static_cast<int>(page))) ShowWindow(child, SW_SHOW);
    return TRUE;
}

BOOL CALLBACK HideUnlessOfPage(HWND child, LPARAM page) {
    if (!IsOfPage(child, static_cast<int>(page))) ShowWindow(child, SW_HIDE);
    return TRUE;
}

LRESULT FileCount(HWND dialog) {
    return SendDlgItemMessageW(dialog, IDC_WIZARD_FILES, LB_GETCOUNT, 0, 0);  // below 0 on an error
}

bool IsUsable(HWND dialog, HWND control) {
    LONG style = GetWindowLongW(control, GWL_STYLE);
    return (style & WS_VISIBLE) && !(style & WS_DISABLED) && IsOfPage(control, Edited<Wizard>(dialog)->page);
}

// Takes the focus from a control that can't be used any more, or that the system already took it from. Next comes
// first, so that Enter leads on; where it has to wait for files, Select does. To be called before the control is
// hidden: the system would hand the focus to some other button, and Enter would still mean Next.
void KeepFocusUsable(HWND dialog) {
    HWND focus = GetFocus();
    if (focus && (!IsChild(dialog, focus) || IsUsable(dialog, focus))) return;
    for (int id : {IDC_WIZARD_NEXT, IDC_WIZARD_SELECT, static_cast<int>(IDCANCEL)}) {
        HWND control = GetDlgItem(dialog, id);
        if (!control || !IsUsable(dialog, control)) continue;
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
    EnumChildWindows(dialog, ShowIfOfPage, page);
    SetDlgItemTextW(dialog, IDC_WIZARD_NEXT, page < kWizardLastPage ? L"Next" : L"Done");
    EnableWizardButtons(dialog);
    EnumChildWindows(dialog, HideUnlessOfPage, page);
}
