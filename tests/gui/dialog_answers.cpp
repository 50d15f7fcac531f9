#include "tests/gui/dialog_answers.h"

#include <gtest/gtest.h>

#include "platform/wide_text.h"

namespace {

constexpr UINT kPollMilliseconds = 10;
constexpr int kFileNameField = 0x480;  // edt1 of the system's file dialogs
constexpr wchar_t kAnsweredMark[] = L"ZephyrTestAnswered";

DialogAnswers* current;

BOOL CALLBACK TakeWaitingDialog(HWND window, LPARAM found) {
    wchar_t className[20] = L"";
    GetClassNameW(window, className, 20);
    bool dialog = wcscmp(className, L"#32770") == 0 || wcscmp(className, L"KLM ZephyrSelect") == 0;
    bool waits = dialog && IsWindowVisible(window) && IsWindowEnabled(window) && !GetPropW(window, kAnsweredMark);
    if (!waits) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

std::string CaptionOf(HWND window) {
    wchar_t caption[100] = L"";
    GetWindowTextW(window, caption, 100);
    return Utf8FromWide(caption);
}

}  // namespace

DialogAnswers::DialogAnswers() : timer_(SetTimer(nullptr, 0, kPollMilliseconds, OnTimer)), outer_(current) {
    current = this;
}

DialogAnswers::~DialogAnswers() {
    KillTimer(nullptr, timer_);
    current = outer_;
    EXPECT_TRUE(answers_.empty()) << answers_.size() << " dialogs never appeared";
}

void CALLBACK DialogAnswers::OnTimer(HWND, UINT, UINT_PTR, DWORD) {
    if (current) current->AnswerOneDialog();
}

void DialogAnswers::AnswerOneDialog() {
    HWND dialog = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), TakeWaitingDialog, reinterpret_cast<LPARAM>(&dialog));
    if (!dialog) return;
    SetPropW(dialog, kAnsweredMark, dialog);
    texts_.push_back(ControlText(dialog, 101));
    if (answers_.empty()) {
        ADD_FAILURE() << "unexpected dialog \"" << CaptionOf(dialog) << "\": " << texts_.back();
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        if (IsWindow(dialog)) SendMessageW(dialog, WM_CLOSE, 0, 0);  // a window that is no dialog
        return;
    }
    Steps steps = std::move(answers_.front());
    answers_.pop_front();
    steps(dialog);
}

void DialogAnswers::Press(int button) {
    Do([button](HWND dialog) { PressButton(dialog, button); });
}

void DialogAnswers::ChooseFile(std::string path) {
    Do([path](HWND dialog) {
        SetDlgItemTextW(dialog, kFileNameField, WideFromUtf8(path).c_str());
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);  // posted: a question about an existing file may come up
    });
}

void PressButton(HWND dialog, int button) {
    HWND control = GetDlgItem(dialog, button);
    bool usable = control && IsWindowEnabled(control);
    EXPECT_TRUE(usable) << "button " << button << " in \"" << CaptionOf(dialog) << "\"";
    WPARAM command = MAKEWPARAM(usable ? button : IDCANCEL, BN_CLICKED);
    SendMessageW(dialog, WM_COMMAND, command, reinterpret_cast<LPARAM>(control));
}

void ClickBox(HWND dialog, int box) {
    SendDlgItemMessageW(dialog, box, BM_CLICK, 0, 0);
}

std::string ControlText(HWND dialog, int control) {
    wchar_t text[1024] = L"";
    GetDlgItemTextW(dialog, control, text, 1024);
    return Ansi1252FromWide(text);
}
