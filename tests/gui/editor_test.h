// What the tests of the editing dialogs share: a document, and short names for what a user does to a dialog.
#pragma once

#include "app/services/shell_objects.h"
#include "app/shell_state.h"
#include "platform/faults.h"
#include "resources/command_ids.h"
#include "resources/editor_ids.h"
#include "tests/gui/picture.h"
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
    struct Change {
        int control;
        const char* text = nullptr;  // Windows-1252, to type or to choose; without one the control is clicked
    };

    void SetUp() override;
    static void MakeSample();

    static Block At(int index);
    static void Put(const Block& block) { EXPECT_TRUE(PutBlock(&document, block, block.position)); }
    static std::string LineOf(int index);
    static std::string TextOf(int index);
    static void ChangeHeader(uint8_t packed, int colour);  // all colours become (colour, colour, colour)

    // The main window's lines: their kinds, the selected one in brackets, and "changed" when the document is.
    std::string State() const;

    // Gives the command, or edits block `index`, while `dialogs` are worked in the order in which they appear.
    void Run(int command, std::vector<Steps> dialogs);
    static int Edit(int index, std::vector<Steps> dialogs);

    // Steps that make the changes in a dialog and end it with the button. The controls must look like `before` and then
    // like `after` (see Shown). Nothing fails any more in it until the button, where `faultsAtButton` come to be once.
    static Steps Work(const std::vector<int>& controls, const std::string& before, const std::vector<Change>& changes,
                      const std::string& after, int button);
    inline static Faults faultsAtButton;
    static Steps Press(int button, const std::vector<Change>& changes = {}) {
        return Work({}, "", changes, "", button);
    }
    static Steps See(const std::vector<int>& controls, const std::string& shown, int button) {
        return Work(controls, shown, {}, shown, button);
    }
    static Steps Read(const std::string& text, int button) { return See({101}, text, button); }  // in a message box

    // Steps for the colour grid (the last pixel of a cell) and the eyedropper (a pixel, which must have the colour).
    static Steps ChooseCell(int column, int row);
    static Steps ClickPixel(int x, int y, COLORREF colour);
    static COLORREF PixelAt(HWND window, int x, int y);

    // What the controls hold, "on|off|640": boxes and radio buttons by their state. In brackets when disabled.
    static std::string Shown(HWND dialog, const std::vector<int>& controls);
};
