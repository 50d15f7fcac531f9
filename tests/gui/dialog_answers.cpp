#include "tests/gui/dialog_answers.h"

#include <gtest/gtest.h>

#include "platform/wide_text_win32.h"
#include "windows/services/progress_dialog.h"
#include "windows/viewer/viewer_state.h"

namespace {

constexpr int kPatience = 1000;  // polls, one in 10 ms, until an answered dialog that stays open counts as stuck
constexpr wchar_t kAnsweredMark[] = L"ZephyrTestAnswered";

DialogAnswers* current;

// The dialog over long work goes by itself; it is there for a test only that wants to stop the work.
bool IsLeftAlone(HWND window) {
    return FindWindowExW(window, nullptr, PROGRESS_CLASSW, nullptr) && !workWaitsForStop;
}

// Prefers one that has had no answer.
BOOL CALLBACK TakeOpenDialog(HWND window, LPARAM found) {
    wchar_t name[20] = L"";
    GetClassNameW(window, name, 20);
    bool dialog = !wcscmp(name, L"#32770") || !wcscmp(name, L"KLM ZephyrSelect") || !wcscmp(name, kViewerClass);
    if (!dialog || !IsWindowVisible(window) || !IsWindowEnabled(window) || IsLeftAlone(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return GetPropW(window, kAnsweredMark) ? TRUE : FALSE;
}

void GiveUp(HWND dialog, const char* why) {
    ADD_FAILURE() << why << " dialog: " << ControlText(dialog, 101);
    PostMessageW(dialog, WM_COMMAND, GetDlgItem(dialog, IDOK) && !GetDlgItem(dialog, IDCANCEL) ? IDOK : IDCANCEL, 0);
    PostMessageW(dialog, WM_CLOSE, 0, 0);  // for a window that is no dialog
}

}  // namespace

DialogAnswers::DialogAnswers(std::vector<Steps> answers)
    : timer_(SetTimer(nullptr, 0, 10, AnswerOneDialog)), answers_(std::move(answers)) {
    EXPECT_EQ(current, nullptr) << "one object at a time";
    current = this;
}

DialogAnswers::~DialogAnswers() {
    KillTimer(nullptr, timer_);
    current = nullptr;
    EXPECT_EQ(given_, answers_.size()) << "not all dialogs appeared";
}

void CALLBACK DialogAnswers::AnswerOneDialog(HWND, UINT, UINT_PTR, DWORD) {
    HWND dialog = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), TakeOpenDialog, reinterpret_cast<LPARAM>(&dialog));
    if (!current || !dialog) return;
    if (GetPropW(dialog, kAnsweredMark)) {
        if (++current->idlePolls_ % kPatience == 0) GiveUp(dialog, "stuck");
        return;
    }
    current->idlePolls_ = 0;
    SetPropW(dialog, kAnsweredMark, dialog);
    current->texts_.push_back(ControlText(dialog, 101));
    if (current->given_ == current->answers_.size()) return GiveUp(dialog, "unexpected");
    Steps steps = current->answers_[current->given_++];
    steps(dialog);
}

DialogAnswers::Steps DialogAnswers::ChooseFiles(const std::vector<std::string>& texts) {
    return [=](HWND dialog) {
        for (const std::string& text : texts) {
            SetDlgItemTextW(dialog, FileNameField(dialog), WideFromUtf8(text).c_str());
            SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        }
    };
}

int FileNameField(HWND dialog) {
    constexpr int kField = 0x480, kBox = 0x47C;  // edt1, and cmb13, which newer dialogs have in its place
    return GetDlgItem(dialog, kField) ? kField : kBox;
}

void PressButton(HWND dialog, int button) {
    HWND control = GetDlgItem(dialog, button);
    bool usable = control && IsWindowEnabled(control);
    EXPECT_TRUE(usable) << "button " << button;
    WPARAM command = MAKEWPARAM(usable ? button : IDCANCEL, BN_CLICKED);
    SendMessageW(dialog, WM_COMMAND, command, reinterpret_cast<LPARAM>(control));
}

void ClickBox(HWND dialog, int box) {
    if (IsWindowEnabled(GetDlgItem(dialog, box))) SendDlgItemMessageW(dialog, box, BM_CLICK, 0, 0);
}

std::string ControlText(HWND dialog, int control) {
    wchar_t text[1024] = L"";
    GetDlgItemTextW(dialog, control, text, 1024);
    return Ansi1252FromWide(text);
}
