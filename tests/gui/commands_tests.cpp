// Editing, deleting and inserting blocks through the main window.
#include "app/shell_state.h"
#include "editing/palette_match.h"
#include "platform/faults.h"
#include "resources/command_ids.h"
#include "resources/insert_ids.h"
#include "tests/gui/window_driver.h"

namespace {

using Texts = std::vector<std::string>;

class CommandsTest : public ShellTest {
protected:
    void OpenGif() { Open(MakeGif("a.gif")); }  // HEADER COMMENT IMAGE COMMENT

    // The lines' kind names.
    std::string Kinds() const {
        std::string kinds;
        for (const std::string& line : Lines()) kinds += (kinds.empty() ? "" : " ") + line.substr(0, line.find('\xFE'));
        return kinds;
    }

    // What the command leaves behind: the lines, the selected one, and whether the document is changed by it.
    void Expect(const std::string& kinds, int selection, bool changed) const {
        EXPECT_EQ(Kinds(), kinds);
        EXPECT_EQ(Selection(), selection);
        EXPECT_EQ(documentChanged, changed);
    }
};

TEST_F(CommandsTest, CommandsOnABlockWantASelection) {
    for (int command : {IDM_EDIT, IDM_DELETE, IDM_INSERT}) {
        DialogAnswers answers;
        answers.Press(IDOK);
        Command(command);
        EXPECT_EQ(answers.Texts(), Texts{"No block is currently selected"}) << command;
        EXPECT_FALSE(documentChanged);
    }
}

TEST_F(CommandsTest, DeleteSelectsTheSameIndexOrTheNewLastBlock) {
    OpenGif();
    DialogAnswers answers;
    answers.Press(IDOK);
    Command(IDM_DELETE);
    EXPECT_EQ(answers.Texts(), Texts{"The header block can't be copied or deleted."});
    Expect("HEADER COMMENT IMAGE COMMENT", 0, false);
    Select(1);
    Command(IDM_DELETE);
    Expect("HEADER IMAGE COMMENT", 1, true);
    Select(2);
    Command(IDM_DELETE);
    Expect("HEADER IMAGE", 1, true);
}

TEST_F(CommandsTest, ADoubleClickEditsTheLine) {
    OpenGif();
    Select(1);
    for (int button : {IDCANCEL, IDOK}) {
        DialogAnswers answers;
        answers.Press(button);
        DoubleClick();
        Expect("HEADER COMMENT IMAGE COMMENT", 1, button == IDOK);
    }
}

TEST_F(CommandsTest, SelectionChangesAreRememberedAndOtherCommandsIgnored) {
    OpenGif();
    EXPECT_EQ(selectedLine, 65535u);
    for (int line : {2, -1}) {
        Select(line);
        EXPECT_EQ(selectedLine, 2u);
    }
    DialogAnswers none;
    for (int id : {1, 99, 109, 200, 202, 996, 1001, 1999, 2001, 2002, 65535}) Command(id);
    Expect("HEADER COMMENT IMAGE COMMENT", -1, false);
}

TEST_F(CommandsTest, InsertPutsABlockBehindTheSelectedOneButALoopBehindTheHeader) {
    OpenGif();
    Select(1);
    DialogAnswers answers;
    answers.Press(IDC_INSERT_CONTROL);
    Command(IDM_INSERT);
    Expect("HEADER COMMENT CONTROL IMAGE COMMENT", 1, true);
    EXPECT_EQ(selectedLine, 65535u);
    answers.Press(IDC_INSERT_LOOP);
    Command(IDM_INSERT);
    Expect("HEADER LOOP COMMENT CONTROL IMAGE COMMENT", 0, true);
    Select(3);
    documentChanged = false;
    answers.Press(IDC_INSERT_LOOP);
    answers.Press(IDOK);
    Command(IDM_INSERT);
    EXPECT_EQ(answers.Texts().back(),
              "A LOOP block already exists in this image. Delete it before inserting a new one.");
    Expect("HEADER LOOP COMMENT CONTROL IMAGE COMMENT", 3, false);
}

TEST_F(CommandsTest, ImagesGoInByTheBytesOfTheirNamesUpToAFailure) {
    OpenGif();
    for (const char* name : {"c.gif", "A1.gif", "b.gif", "e.gif"}) MakeGif(name, 2, 1);
    WriteWholeFile(File("d.gif"), "no picture");
    Select(1);
    DialogAnswers answers;
    answers.Press(IDC_INSERT_IMAGE);
    answers.ChooseFiles(Folder(), {"c.gif", "A1.gif", "e.gif", "d.gif", "b.gif"});
    Command(IDM_INSERT);
    Expect("HEADER COMMENT IMAGE IMAGE IMAGE IMAGE COMMENT", 1, true);
    const char* names[] = {"A1.gif", "b.gif", "c.gif"};
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(Lines()[2 + i], std::string("IMAGE\xFE ") + names[i] + " 2 x 1, 256 colours");
}

TEST_F(CommandsTest, AnInsertThatIsCancelledOrLacksMemoryChangesNothing) {
    OpenGif();
    paletteChoiceForInsert = kPaletteDither;
    DialogAnswers answers;
    answers.Press(IDC_INSERT_IMAGE);
    answers.Press(IDCANCEL);  // the file dialog
    Command(IDM_INSERT);
    EXPECT_EQ(paletteChoiceForInsert, kAskForPalette) << "each command asks afresh";
    answers.Do([](HWND dialog) {
        faults.allocationsUntilFailure = 0;
        PressButton(dialog, IDC_INSERT_IMAGE);
    });
    answers.Press(IDOK);
    Command(IDM_INSERT);
    faults.allocationsUntilFailure = Faults::kNever;
    EXPECT_EQ(answers.Texts().back(), "There has been an error allocating memory.");
    Expect("HEADER COMMENT IMAGE COMMENT", 0, false);
}

}  // namespace
