// What the tests of the editing dialogs share: a document, the process-wide objects, and short names for what a user
// does to a dialog.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/services/shell_objects.h"
#include "tests/gui/dialog_answers.h"
#include "tests/gui/sample_document.h"

class EditorTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
};

using Steps = DialogAnswers::Steps;

// Edits block `index` while `dialogs` are worked in the order in which they appear; returns what EditBlock did.
int Edit(SampleDocument& document, int index, const std::vector<Steps>& dialogs);

// Steps that end a dialog with the button, after setting `text` (Windows-1252) into the control before it if one is
// given.
Steps Press(int button);
Steps Type(int control, const char* text, int button);

// A step for a message box that must show `text`.
Steps Read(const std::string& text, int button);

// Steps for the colour grid (the cell of an entry) and the eyedropper (a pixel).
Steps ChooseCell(int index);
Steps ClickPixel(int x, int y);

void SetText(HWND dialog, int control, const std::string& text);
void Click(HWND dialog, int control);  // as the mouse does: nothing happens to a disabled control
bool IsEnabled(HWND dialog, int control);
bool IsChecked(HWND dialog, int control);
