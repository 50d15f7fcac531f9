#include "windows/dialogs/export_dialog.h"

#include <string>

#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/ids/tool_ids.h"
#include "windows/services/messages.h"
#include "windows/services/screen_reader.h"

namespace {

constexpr WPARAM kMostDigits = 9;

struct Choice {
    int button;
    ExportForm form;
};
constexpr Choice kChoices[] = {{IDC_EXPORT_FILES, ExportForm::kFiles},
                               {IDC_EXPORT_SHEET, ExportForm::kSheet},
                               {IDC_EXPORT_ANIMATION, ExportForm::kAnimation}};

void EnableRange(HWND dialog) {
    for (int field : {IDC_EXPORT_FIRST, IDC_EXPORT_LAST})
        EnableControl(dialog, field, TakeCheck(dialog, IDC_EXPORT_SOME));
}

// The label before it is a button.
constexpr ReadWindow kReadFirst = {[](HWND) -> std::wstring { return L"First frame"; }};

bool ShowExport(HWND dialog) {
    const auto& request = *Edited<ExportRequest>(dialog);
    ShowCheck(dialog, IDC_EXPORT_ALL, true);
    ShowCheck(dialog, IDC_EXPORT_FILES, true);
    SetDlgItemTextW(dialog, IDC_EXPORT_COUNT, (L"(" + std::to_wstring(request.count) + L")").c_str());
    ShowNumber(dialog, IDC_EXPORT_FIRST, 1);
    TellReaders(GetDlgItem(dialog, IDC_EXPORT_FIRST), kReadFirst);
    ShowNumber(dialog, IDC_EXPORT_LAST, request.count);
    for (int field : {IDC_EXPORT_FIRST, IDC_EXPORT_LAST})
        SendDlgItemMessageW(dialog, field, EM_LIMITTEXT, kMostDigits, 0);
    EnableRange(dialog);
    return true;
}

// The range, as people count. False when it is none.
bool TakeRange(HWND dialog, ExportRequest* request) {
    request->first = 0;
    request->last = request->count - 1;
    if (TakeCheck(dialog, IDC_EXPORT_ALL)) return true;
    const UINT first = GetDlgItemInt(dialog, IDC_EXPORT_FIRST, nullptr, FALSE);
    const UINT last = GetDlgItemInt(dialog, IDC_EXPORT_LAST, nullptr, FALSE);
    if (first < 1 || last < first || last > request->count) return false;
    request->first = first - 1;
    request->last = last - 1;
    return true;
}

bool OnExport(HWND dialog) {
    auto& request = *Edited<ExportRequest>(dialog);
    if (!TakeRange(dialog, &request)) {
        MessageBox(dialog,
                   L"Give two numbers from 1 to " + std::to_wstring(request.count) + L", the smaller one first.");
        SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, IDC_EXPORT_FIRST)), TRUE);
        return true;
    }
    for (const Choice& choice : kChoices)
        if (TakeCheck(dialog, choice.button)) request.form = choice.form;
    EndDialog(dialog, IDOK);
    return true;
}

bool OnExportClick(HWND dialog, int id) {
    if (id == IDOK) return OnExport(dialog);
    if (id == IDC_EXPORT_ALL || id == IDC_EXPORT_SOME) return EnableRange(dialog), true;
    return false;
}

constexpr DialogKind kExportDialog = {
    .templateName = L"ExportBox",
    .helpKeyword = "KLMExport",
    .show = ShowExport,
    .onClick = OnExportClick,
};

}  // namespace

bool AskExport(HWND owner, ExportRequest* request) {
    return RunEditingDialog(owner, kExportDialog, request) == IDOK;
}
