// Answers modal dialogs while a test waits for the call that shows them.
//
//   DialogAnswers answers;
//   answers.Press(IDNO);                        // the first dialog that appears
//   answers.Do([](HWND dialog) { ... });        // the second one
//   window.Command(IDM_EXIT);                   // returns when both have been answered
//
// Each answer is given once, to the next dialog (or eyedropper window) of this thread that is visible and enabled and
// has had none yet; so a dialog that an answer opens (nested) takes the answer after it. A dialog that finds no answer
// left fails the test and is cancelled, as is a step that leaves its dialog open for good: nothing hangs. Answers
// nobody asked for fail the test when the object goes.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "platform/windows_api.h"

class DialogAnswers {
public:
    using Steps = std::function<void(HWND dialog)>;

    DialogAnswers();
    ~DialogAnswers();
    DialogAnswers(const DialogAnswers&) = delete;
    DialogAnswers& operator=(const DialogAnswers&) = delete;

    void Do(Steps steps) { answers_.push_back(std::move(steps)); }
    void Press(int button);

    // Types `path` (UTF-8) into a system file dialog and confirms it.
    void ChooseFile(std::string path);

    // Goes to `folder` in a system file dialog, chooses the files `names` there and confirms.
    void ChooseFiles(std::string folder, std::vector<std::string> names);

    // What the dialogs showed in control 101, in the order in which they appeared (Windows-1252; empty without one).
    const std::vector<std::string>& Texts() const { return texts_; }

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD);
    void AnswerOneDialog();
    void GiveUp(HWND dialog, const char* why);

    UINT_PTR timer_;
    DialogAnswers* outer_;
    int idlePolls_ = 0;
    std::deque<Steps> answers_;
    std::vector<std::string> texts_;
};

// Presses the button as a user would: tells the dialog, when the button exists and is enabled. Else the test fails.
void PressButton(HWND dialog, int button);

// The control of a system file dialog that holds the name.
int FileNameField(HWND dialog);

// Clicks a button as the mouse does: a box changes its own state first, and nothing happens to a disabled control.
void ClickBox(HWND dialog, int box);

std::string ControlText(HWND dialog, int control);  // Windows-1252
