#include "windows/services/progress_dialog.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <exception>
#include <future>
#include <string>

#include "windows/ids/tool_ids.h"
#include "windows/services/dialogs.h"
#include "windows/services/screen_reader.h"
#include "windows/services/shell_objects.h"
#include "windows/services/wait_cursor.h"

namespace {

// Work that is done in this time needs no dialog, which would only flash up.
constexpr std::chrono::milliseconds kMoment{200};
constexpr std::chrono::milliseconds kNoTime{0};

constexpr UINT_PTR kLookTimer = 1;
constexpr UINT kLookMilliseconds = 50;
constexpr int kBarSteps = 1000;

// What the thread and the dialog tell each other.
struct Work {
    const wchar_t* caption = nullptr;
    const wchar_t* line = nullptr;
    std::atomic<unsigned> reached = 0;  // of kBarSteps
    std::atomic<bool> isToStop = false;
    unsigned shown = kBarSteps + 1;  // as `reached`
    WorkWatch watch;
    std::future<void> end;  // the last one: it waits for the thread, which needs the others

    bool IsOver(std::chrono::milliseconds wait) const { return end.wait_for(wait) == std::future_status::ready; }
};

bool Reach(Work* work, size_t done, size_t count) {
    if (count > 0) work->reached = static_cast<unsigned>(uint64_t{std::min(done, count)} * kBarSteps / count);
    while (workWaitsForStop && !work->isToStop) Sleep(1);
    return !work->isToStop;
}

Work* WorkOf(HWND dialog) {
    return reinterpret_cast<Work*>(GetWindowLongPtrW(dialog, DWLP_USER));
}

void ShowReached(HWND dialog, Work* work) {
    const unsigned reached = work->reached;
    if (reached == work->shown || work->isToStop) return;
    work->shown = reached;
    SendDlgItemMessageW(dialog, IDC_WORK_BAR, PBM_SETPOS, reached, 0);
    const std::wstring line = work->line + std::wstring(L": ") + std::to_wstring(reached * 100 / kBarSteps) + L" %";
    SetDlgItemTextW(dialog, IDC_WORK_LINE, line.c_str());
}

constexpr ReadWindow kReadBar = {LabelBefore};

INT_PTR OnInitDialog(HWND dialog, Work* work) {
    SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(work));
    GiveProgramIcon(dialog);
    if (hListFont) SetChildFonts(dialog, hListFont, false);
    SetWindowTextW(dialog, work->caption);
    SendDlgItemMessageW(dialog, IDC_WORK_BAR, PBM_SETRANGE, 0, MAKELPARAM(0, kBarSteps));
    TellReaders(GetDlgItem(dialog, IDC_WORK_BAR), kReadBar);
    ShowReached(dialog, work);
    SetTimer(dialog, kLookTimer, kLookMilliseconds, nullptr);
    CentreWindow(dialog);
    SetFocus(GetDlgItem(dialog, IDCANCEL));
    return FALSE;
}

INT_PTR OnLook(HWND dialog) {
    Work* work = WorkOf(dialog);
    if (work->IsOver(kNoTime)) return EndDialog(dialog, IDOK);
    ShowReached(dialog, work);
    return TRUE;
}

// The dialog stays until the work has heard of it.
INT_PTR OnStop(HWND dialog) {
    WorkOf(dialog)->isToStop = true;
    SetDlgItemTextW(dialog, IDC_WORK_LINE, L"Stopping...");
    return TRUE;
}

INT_PTR OnMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) return OnInitDialog(dialog, reinterpret_cast<Work*>(lParam));
    if (!WorkOf(dialog)) return FALSE;
    if (message == WM_TIMER) return OnLook(dialog);
    if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) return OnStop(dialog);
    return AnswerControlColour(message, wParam, lParam);
}

INT_PTR CALLBACK WorkProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        return OnMessage(dialog, message, wParam, lParam);
    } catch (const std::exception&) {  // memory has run out; no exception may cross the system's code
        return FALSE;
    }
}

// False when the dialog did not wait for the end: it could not be shown, or went with its owner.
bool WaitInDialog(HWND owner, Work* work) {
    INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&classes);
    return RunDialog(owner, L"WorkBox", WorkProc, work) == IDOK;
}

}  // namespace

bool workWaitsForStop = false;

WorkEnd RunWithProgress(HWND owner, const wchar_t* caption, const wchar_t* line, const LongWork& work) {
    try {
        Work state;
        state.caption = caption;
        state.line = line;
        state.watch = [&state](size_t done, size_t count) { return Reach(&state, done, count); };
        state.end = std::async(std::launch::async, [&] { work(state.watch, state.isToStop); });
        bool waited = true;
        {
            WaitCursor cursor;
            waited = state.IsOver(kMoment);
        }
        if (!waited && !WaitInDialog(owner, &state)) {
            state.isToStop = true;
            state.end.get();
            return WorkEnd::kNoMemory;
        }
        state.end.get();
        return state.isToStop ? WorkEnd::kStopped : WorkEnd::kDone;
    } catch (const std::exception&) {
        return WorkEnd::kNoMemory;
    }
}
