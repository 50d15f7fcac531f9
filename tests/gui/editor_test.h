// What the tests of the editing dialogs share: a document, and short names for what a user does to a dialog.
#pragma once

#include "app/services/shell_objects.h"
#include "app/shell_state.h"
#include "platform/wide_text.h"
#include "tests/gui/window_driver.h"

// The blocks of the document: one of every kind.
enum SampleBlock {
    kSampleHeader,     // 256 colours, the web palette
    kSampleImage,      // 40 x 30, "first.gif", 16 colours of its own: entry i is (i, 2 i, 3 i); pixel x, y is x % 16
    kSampleControl,    // before the second image
    kSamplePlainText,  // between the images
    kSampleComment,
    kSampleLoop,
    kSampleSecondImage,  // 20 x 10, no name, global palette; pixel x, y is 100 + x
    kSampleApplication,
    kSampleUnknown,
    kSampleEmpty,
    kSampleBlockNames,
    kSampleLastControl,  // behind all images
};

class EditorTest : public ShellTest {
protected:
    using Steps = DialogAnswers::Steps;

    void SetUp() override;
    static void MakeSample();

    static Block At(int index);
    static void Put(const Block& block) { EXPECT_TRUE(PutBlock(&document, block, block.position)); }
    static std::string LineOf(int index);
    static std::string TextOf(int index);
    static void ChangeHeader(uint8_t packed, int colour);  // all colours become (colour, colour, colour)

    // Gives the command, or edits block `index`, while `dialogs` are worked in the order in which they appear.
    void Run(int command, std::vector<Steps> dialogs);
    static int Edit(int index, std::vector<Steps> dialogs);

    // Steps that end a dialog with the button, after `first`, or after setting `text` (Windows-1252) into the control.
    static Steps Press(int button) {
        return Then([](HWND) {}, button);
    }
    static Steps Then(const Steps& first, int button);
    static Steps Type(int control, const std::string& text, int button);

    // Steps for a dialog whose controls must look so (see Shown), or for a message box with that text. From there on
    // nothing fails any more.
    static Steps See(const std::vector<int>& controls, const std::string& shown, int button);
    static Steps Read(const std::string& text, int button) { return See({101}, text, button); }

    // Steps for the colour grid (the last pixel of a cell) and the eyedropper (a pixel, which must have the colour).
    static Steps ChooseCell(int column, int row);
    static Steps ClickPixel(int x, int y, COLORREF colour = CLR_INVALID);

    static void SetText(HWND dialog, int control, const std::string& text);

    // What the controls hold, "on|off|640": boxes and radio buttons by their state. In brackets when disabled.
    static std::string Shown(HWND dialog, const std::vector<int>& controls);
};
