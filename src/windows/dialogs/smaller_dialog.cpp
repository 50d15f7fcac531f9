#include "windows/dialogs/smaller_dialog.h"

#include <string>

#include "size/colour_distance.h"
#include "size/strip.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/ids/tool_ids.h"
#include "windows/services/messages.h"

namespace {

constexpr WPARAM kMostDigits = 9;

struct EffortButton {
    int button;
    Effort effort;
};
constexpr EffortButton kEfforts[] = {
    {IDC_SMALLER_FAST, Effort::kFast}, {IDC_SMALLER_NORMAL, Effort::kNormal}, {IDC_SMALLER_MAX, Effort::kMax}};

struct StripBox {
    int box;
    uint16_t kind;
};
constexpr StripBox kStripBoxes[] = {{IDC_SMALLER_COMMENTS, kCommentBlock},
                                    {IDC_SMALLER_APPLICATIONS, kApplicationBlock},
                                    {IDC_SMALLER_NAMES, kBlockNamesBlock},
                                    {IDC_SMALLER_TEXTS, kPlainTextBlock},
                                    {IDC_SMALLER_UNKNOWN, kUnknownBlock}};
static_assert(std::size(kStripBoxes) == std::size(kStrippedKinds));

bool ShowSmaller(HWND dialog) {
    const std::wstring bytes = GroupedNumber(Edited<SmallerRequest>(dialog)->before);
    SetDlgItemTextW(dialog, IDC_SMALLER_BEFORE, (L"Saved now: " + bytes + L" bytes").c_str());
    ShowCheck(dialog, IDC_SMALLER_NORMAL, true);
    ShowNumber(dialog, IDC_SMALLER_LOSSY, 0);
    SendDlgItemMessageW(dialog, IDC_SMALLER_LOSSY, EM_LIMITTEXT, kMostDigits, 0);
    return true;
}

bool OnSearch(HWND dialog) {
    auto& request = *Edited<SmallerRequest>(dialog);
    BOOL isNumber = FALSE;
    const UINT lossy = GetDlgItemInt(dialog, IDC_SMALLER_LOSSY, &isNumber, FALSE);
    if (!isNumber || lossy > kFarthest) {
        MessageBox(dialog, L"Give a number from 0 to " + std::to_wstring(kFarthest) + L"; 0 changes no colour.");
        SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, IDC_SMALLER_LOSSY)), TRUE);
        return true;
    }
    request.options.lossy = static_cast<int>(lossy);
    request.options.keepFrames = TakeCheck(dialog, IDC_SMALLER_KEEP_FRAMES);
    for (const EffortButton& row : kEfforts)
        if (TakeCheck(dialog, row.button)) request.options.effort = row.effort;
    for (const StripBox& row : kStripBoxes)
        if (TakeCheck(dialog, row.box)) request.stripped.push_back(row.kind);
    EndDialog(dialog, IDOK);
    return true;
}

bool OnSmallerClick(HWND dialog, int id) {
    return id == IDOK && OnSearch(dialog);
}

constexpr DialogKind kSmallerDialog = {
    .templateName = L"SmallerBox",
    .helpKeyword = "KLMMakeSmaller",
    .show = ShowSmaller,
    .onClick = OnSmallerClick,
};

}  // namespace

std::wstring GroupedNumber(uint64_t number) {
    std::wstring text = std::to_wstring(number);
    for (size_t at = text.size(); at > 3; at -= 3) text.insert(at - 3, L" ");
    return text;
}

bool AskSmaller(HWND owner, SmallerRequest* request) {
    return RunEditingDialog(owner, kSmallerDialog, request) == IDOK;
}
