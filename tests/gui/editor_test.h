// What the tests of the editing dialogs share: a document, the process-wide objects, and short names for what a user
// does to a dialog.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/services/shell_objects.h"
#include "gif/block_list.h"
#include "tests/gui/dialog_answers.h"

using Steps = DialogAnswers::Steps;

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

class EditorTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    Block At(int index) const;
    void Put(const Block& block) { EXPECT_TRUE(PutBlock(&sample_, block, block.position)); }
    std::string LineOf(int index) const;
    std::string TextOf(int index) const;

    // Edits block `index` while `dialogs` are worked in the order in which they appear; returns what EditBlock did.
    int Edit(int index, const std::vector<Steps>& dialogs);

private:
    void Append(uint16_t kind, MemoryHandle bitmap = nullptr, const char* name = nullptr);

    BlockList sample_ = {};
};

// Steps that end a dialog with the button, after `first`, or after setting `text` (Windows-1252) into the control.
Steps Press(int button);
Steps Then(const Steps& first, int button);
Steps Type(int control, const char* text, int button);

// Steps for a dialog whose controls must look so (see Shown), or for a message box with that text.
Steps See(const std::vector<int>& controls, const std::string& shown, int button);
Steps Read(const std::string& text, int button);

// Steps for the colour grid (the cell of an entry) and the eyedropper (a pixel).
Steps ChooseCell(int index);
Steps ClickPixel(int x, int y);

void SetText(HWND dialog, int control, const std::string& text);

// What the controls hold, "on|off|640": boxes and radio buttons by their state. In brackets when disabled.
std::string Shown(HWND dialog, const std::vector<int>& controls);
