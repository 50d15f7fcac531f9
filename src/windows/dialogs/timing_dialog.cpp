#include "windows/dialogs/timing_dialog.h"

#include <numeric>

#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/ids/timing_ids.h"

namespace {

constexpr wchar_t kHundredths[] = L"1/100ths of a second";
constexpr wchar_t kPercent[] = L"per cent";
constexpr uint32_t kUnscaled = 100;   // per cent
constexpr uint32_t kLeastPlayed = 2;  // players show frames of less for longer
constexpr WPARAM kMostDigits = 9;     // what 32 bits hold

struct Choice {
    int button;
    Retiming::Kind kind;
};
constexpr Choice kChoices[] = {{IDC_TIMING_DELAY, Retiming::kDelay},
                               {IDC_TIMING_SCALE, Retiming::kScale},
                               {IDC_TIMING_TOTAL, Retiming::kTotal},
                               {IDC_TIMING_LEAST, Retiming::kLeast}};

Retiming::Kind ChosenKind(HWND dialog) {
    for (const Choice& choice : kChoices)
        if (TakeCheck(dialog, choice.button)) return choice.kind;
    return Retiming::kDelay;
}

std::vector<uint32_t> ChosenFrames(HWND dialog) {
    const auto& request = *Edited<TimingRequest>(dialog);
    if (TakeCheck(dialog, IDC_TIMING_SELECTED)) return {static_cast<uint32_t>(request.selectedFrame)};
    std::vector<uint32_t> all(request.delays.size());
    std::iota(all.begin(), all.end(), 0u);
    return all;
}

// What the frames have, so that OK at once changes as little as can be.
uint32_t ProposedValue(HWND dialog) {
    const std::vector<uint32_t>& delays = Edited<TimingRequest>(dialog)->delays;
    const std::vector<uint32_t> frames = ChosenFrames(dialog);
    switch (ChosenKind(dialog)) {
        case Retiming::kScale: return kUnscaled;
        case Retiming::kLeast: return kLeastPlayed;
        case Retiming::kDelay: return delays[frames[0]];
        case Retiming::kTotal: break;
    }
    uint32_t total = 0;
    for (uint32_t frame : frames) total += delays[frame];
    return total;
}

void ProposeValue(HWND dialog) {
    ShowNumber(dialog, IDC_TIMING_VALUE, ProposedValue(dialog));
    const bool scales = ChosenKind(dialog) == Retiming::kScale;
    SetDlgItemTextW(dialog, IDC_TIMING_UNIT, scales ? kPercent : kHundredths);
}

bool ShowTiming(HWND dialog) {
    const bool hasSelected = Edited<TimingRequest>(dialog)->selectedFrame >= 0;
    EnableControl(dialog, IDC_TIMING_SELECTED, hasSelected);
    ShowCheck(dialog, IDC_TIMING_ALL, true);
    ShowCheck(dialog, IDC_TIMING_DELAY, true);
    SendDlgItemMessageW(dialog, IDC_TIMING_VALUE, EM_LIMITTEXT, kMostDigits, 0);
    ProposeValue(dialog);
    return true;
}

int TakeTiming(HWND dialog) {
    BOOL isNumber = FALSE;
    const UINT value = GetDlgItemInt(dialog, IDC_TIMING_VALUE, &isNumber, FALSE);
    if (!isNumber) return 0;
    auto& request = *Edited<TimingRequest>(dialog);
    request.how = {ChosenKind(dialog), value};
    if (request.how.kind == Retiming::kScale) request.how.divisor = kUnscaled;
    request.frames = ChosenFrames(dialog);
    return 1;
}

bool OnTimingClick(HWND dialog, int id) {
    if (id < IDC_TIMING_DELAY || id > IDC_TIMING_ALL) return false;
    ProposeValue(dialog);
    return true;
}

constexpr DialogKind kTimingDialog = {
    .templateName = L"TimingBox",
    .helpKeyword = "KLMTiming",
    .show = ShowTiming,
    .take = TakeTiming,
    .onClick = OnTimingClick,
};

}  // namespace

bool AskTiming(HWND owner, TimingRequest* request) {
    return RunEditingDialog(owner, kTimingDialog, request) == 1;
}
