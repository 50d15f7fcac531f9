// Inserting blocks through the main window.
#include "app/shell_state.h"
#include "editing/palette_match.h"
#include "platform/faults.h"
#include "resources/command_ids.h"
#include "tests/gui/window_driver.h"

namespace {

using Texts = std::vector<std::string>;

constexpr int kInsertImage = 101;  // buttons of the Insert Object dialog
constexpr int kInsertControl = 102;
constexpr int kInsertLoop = 105;

class InsertCommandTest : public ShellTest {
protected:
    // The lines' kind names.
    Texts Kinds() const {
        Texts kinds;
        for (const std::string& line : Lines()) kinds.push_back(line.substr(0, line.find('\xFE')));
        return kinds;
    }
};

TEST_F(InsertCommandTest, InsertPutsABlockBehindTheSelectedOne) {
    Open(MakeGif("a.gif"));
    Select(1);
    DialogAnswers answers;
    answers.Press(kInsertControl);
    Command(IDM_INSERT);
    EXPECT_EQ(Kinds(), (Texts{"HEADER", "COMMENT", "CONTROL", "IMAGE", "COMMENT"}));
    EXPECT_EQ(Selection(), 1);
    EXPECT_EQ(selectedLine, 65535u);
    EXPECT_TRUE(documentChanged);
}

TEST_F(InsertCommandTest, ACancelledInsertChangesNothing) {
    Open(MakeGif("a.gif"));
    paletteChoiceForInsert = kPaletteDither;
    DialogAnswers answers;
    answers.Press(IDCANCEL);
    answers.Press(kInsertImage);
    answers.Press(IDCANCEL);  // the file dialog
    Command(IDM_INSERT);
    EXPECT_EQ(paletteChoiceForInsert, kAskForPalette) << "each command asks afresh";
    Command(IDM_INSERT);
    EXPECT_EQ(Lines().size(), 4u);
    EXPECT_FALSE(documentChanged);
}

TEST_F(InsertCommandTest, OneLoopBlockBehindTheHeader) {
    Open(MakeGif("a.gif"));
    Select(2);
    DialogAnswers answers;
    answers.Press(kInsertLoop);
    Command(IDM_INSERT);
    EXPECT_EQ(Kinds(), (Texts{"HEADER", "LOOP", "COMMENT", "IMAGE", "COMMENT"}));
    EXPECT_EQ(Selection(), 0);
    Select(3);
    documentChanged = false;
    answers.Press(kInsertLoop);
    answers.Press(IDOK);
    Command(IDM_INSERT);
    EXPECT_EQ(answers.Texts().back(),
              "A LOOP block already exists in this image. Delete it before inserting a new one.");
    EXPECT_EQ(Lines().size(), 5u);
    EXPECT_EQ(Selection(), 3);
    EXPECT_FALSE(documentChanged);
}

TEST_F(InsertCommandTest, SeveralImagesGoInByTheBytesOfTheirNames) {
    Open(MakeGif("a.gif"));
    MakeGif("c.gif", 3, 1);
    MakeGif("A1.gif", 1, 1);
    MakeGif("b.gif", 2, 1);
    Select(1);
    DialogAnswers answers;
    answers.Press(kInsertImage);
    answers.ChooseFiles(Folder(), {"c.gif", "A1.gif", "b.gif"});
    Command(IDM_INSERT);
    Texts lines = Lines();
    ASSERT_EQ(lines.size(), 7u);
    EXPECT_EQ(Texts(lines.begin() + 2, lines.begin() + 5),
              (Texts{"IMAGE\xFE A1.gif 1 x 1, 256 colours", "IMAGE\xFE b.gif 2 x 1, 256 colours",
                     "IMAGE\xFE c.gif 3 x 1, 256 colours"}));
    EXPECT_EQ(Selection(), 1);
    EXPECT_TRUE(documentChanged);
}

TEST_F(InsertCommandTest, ImagesInsertedBeforeAFailureStay) {
    Open(MakeGif("a.gif"));
    MakeGif("1.gif", 1, 1);
    WriteWholeFile(File("2.gif"), "no picture");
    MakeGif("3.gif", 3, 1);
    DialogAnswers answers;
    answers.Press(kInsertImage);
    answers.ChooseFiles(Folder(), {"1.gif", "2.gif", "3.gif"});
    Command(IDM_INSERT);
    EXPECT_EQ(Kinds(), (Texts{"HEADER", "IMAGE", "COMMENT", "IMAGE", "COMMENT"}));
    EXPECT_EQ(Selection(), 0);
    EXPECT_TRUE(documentChanged);
}

TEST_F(InsertCommandTest, InsertTellsWhenMemoryRunsOut) {
    Open(MakeGif("a.gif"));
    DialogAnswers answers;
    answers.Do([](HWND dialog) {
        faults.allocationsUntilFailure = 0;
        PressButton(dialog, kInsertImage);
    });
    answers.Press(IDOK);
    Command(IDM_INSERT);
    faults.allocationsUntilFailure = Faults::kNever;
    EXPECT_EQ(answers.Texts().back(), "There has been an error allocating memory.");
    EXPECT_FALSE(documentChanged);
}

}  // namespace
