#include "tests/gui/dialog_answers.h"

#include <gtest/gtest.h>

#include "platform/wide_text.h"

namespace {

constexpr UINT kPollMilliseconds = 10;
constexpr int kFileNameField = 0x480;  // edt1 of the system's file dialogs
constexpr int kFileNameBox = 0x47C;    // cmb13, which newer ones have in its place
constexpr int kPatience = 1000;        // polls until an answered dialog that stays open counts as stuck
constexpr wchar_t kAnsweredMark[] = L"ZephyrTestAnswered";

DialogAnswers* current;

// The eyedropper's window waits for an answer like a dialog, though it has a class of its own.
bool IsOpenDialog(HWND window) {
    wchar_t className[20] = L"";
    GetClassNameW(window, className, 20);
    bool dialog = wcscmp(className, L"#32770") == 0 || wcscmp(className, L"KLM ZephyrSelect") == 0;
    return dialog && IsWindowVisible(window) && IsWindowEnabled(window);
}

// Prefers one that has had no answer.
BOOL CALLBACK TakeOpenDialog(HWND window, LPARAM found) {
    if (!IsOpenDialog(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return GetPropW(window, kAnsweredMark) ? TRUE : FALSE;
}

HWND OpenDialog() {
    HWND dialog = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), TakeOpenDialog, reinterpret_cast<LPARAM>(&dialog));
    return dialog;
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
    HWND dialog = OpenDialog();
    if (!dialog) return;
    if (GetPropW(dialog, kAnsweredMark)) {
        if (++idlePolls_ == kPatience) GiveUp(dialog, "stuck");
        return;
    }
    idlePolls_ = 0;
    SetPropW(dialog, kAnsweredMark, dialog);
    texts_.push_back(ControlText(dialog, 101));
    if (answers_.empty()) return GiveUp(dialog, "unexpected");
    Steps steps = std::move(answers_.front());
    answers_.pop_front();
    steps(dialog);
}

void DialogAnswers::GiveUp(HWND dialog, const char* why) {
    idlePolls_ = 0;
    ADD_FAILURE() << why << " dialog: " << ControlText(dialog, 101);
    PostMessageW(dialog, WM_COMMAND, GetDlgItem(dialog, IDOK) && !GetDlgItem(dialog, IDCANCEL) ? IDOK : IDCANCEL, 0);
    PostMessageW(dialog, WM_CLOSE, 0, 0);  // for a window that is no dialog
}

void DialogAnswers::Press(int button) {
    Do([button](HWND dialog) { PressButton(dialog, button); });
}

void DialogAnswers::ChooseFile(std::string path) {
    Do([path](HWND dialog) {
        SetDlgItemTextW(dialog, FileNameField(dialog), WideFromUtf8(path).c_str());
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);  // posted: a question about an existing file may come up
    });
}

void DialogAnswers::ChooseFiles(std::string folder, std::vector<std::string> names) {
    Do([folder, names](HWND dialog) {
        SetDlgItemTextW(dialog, FileNameField(dialog), WideFromUtf8(folder).c_str());
        SendMessageW(dialog, WM_COMMAND, IDOK, 0);
        std::string quoted;
        for (const std::string& name : names) quoted += "\"" + name + "\" ";
        SetDlgItemTextW(dialog, FileNameField(dialog), WideFromUtf8(quoted).c_str());
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    });
}

int FileNameField(HWND dialog) {
    return GetDlgItem(dialog, kFileNameField) ? kFileNameField : kFileNameBox;
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
