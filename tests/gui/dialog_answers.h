// Answers modal dialogs while a test waits for the call that shows them. Each answer is given once, to the next dialog
// (or eyedropper or viewer) of this thread that is visible and enabled and has had none yet; so a dialog that an answer
// opens takes the answer after it. A dialog that finds no answer left fails the test and is cancelled, as is one that
// stays open after its answer: nothing hangs. Answers nobody asked for fail the test when the object goes. The dialog
// that shows how far long work is gets an answer while workWaitsForStop is set alone. There is one object at a time.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/windows_api.h"

// Presses the button as a user would: tells the dialog, when the button exists and is enabled. Else the test fails.
void PressButton(HWND dialog, int button);

// Clicks a button as the mouse does: a box changes its own state first, and nothing happens to a disabled control.
void ClickBox(HWND dialog, int box);

int FileNameField(HWND dialog);                     // the control of a system file dialog that holds the name
std::string ControlText(HWND dialog, int control);  // Windows-1252

class DialogAnswers {
public:
    using Steps = std::function<void(HWND dialog)>;

    explicit DialogAnswers(std::vector<Steps> answers = {});
    ~DialogAnswers();
    DialogAnswers(const DialogAnswers&) = delete;
    DialogAnswers& operator=(const DialogAnswers&) = delete;

    void Do(Steps steps) { answers_.push_back(std::move(steps)); }
    void Press(int button) {
        Do([=](HWND dialog) { PressButton(dialog, button); });
    }
    // Types `path` (UTF-8) into a system file dialog and confirms it.
    void ChooseFile(const std::string& path) { Do(ChooseFiles({path})); }
    // Steps that do so with several texts: a folder to go to, and then names there, in quotation marks.
    static Steps ChooseFiles(const std::vector<std::string>& texts);

    // What the dialogs showed in control 101, in the order in which they appeared (Windows-1252; empty without one).
    const std::vector<std::string>& Texts() const { return texts_; }

private:
    static void CALLBACK AnswerOneDialog(HWND, UINT, UINT_PTR, DWORD);

    UINT_PTR timer_;
    std::vector<Steps> answers_;
    size_t given_ = 0;
    int idlePolls_ = 0;
    std::vector<std::string> texts_;
};
