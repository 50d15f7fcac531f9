// Editing and deleting blocks through the main window.
#include "app/shell_state.h"
#include "resources/command_ids.h"
#include "tests/gui/window_driver.h"

namespace {

using Texts = std::vector<std::string>;

class CommandsTest : public ShellTest {
protected:
    // The lines' kind names.
    Texts Kinds() const {
        Texts kinds;
        for (const std::string& line : Lines()) kinds.push_back(line.substr(0, line.find('\xFE')));
        return kinds;
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
    Open(MakeGif("a.gif"));
    Select(1);
    Command(IDM_DELETE);
    EXPECT_EQ(Kinds(), (Texts{"HEADER", "IMAGE", "COMMENT"}));
    EXPECT_EQ(Selection(), 1);
    EXPECT_TRUE(documentChanged);
    Select(2);
    Command(IDM_DELETE);
    EXPECT_EQ(Kinds(), (Texts{"HEADER", "IMAGE"}));
    EXPECT_EQ(Selection(), 1);
}

TEST_F(CommandsTest, TheHeaderStays) {
    Open(MakeGif("a.gif"));
    DialogAnswers answers;
    answers.Press(IDOK);
    Command(IDM_DELETE);
    EXPECT_EQ(answers.Texts(), Texts{"The header block can't be copied or deleted."});
    EXPECT_EQ(Lines().size(), 4u);
    EXPECT_FALSE(documentChanged);
}

TEST_F(CommandsTest, ADoubleClickEditsTheLine) {
    Open(MakeGif("a.gif"));
    Select(1);
    for (int button : {IDCANCEL, IDOK}) {
        DialogAnswers answers;
        answers.Press(button);
        DoubleClick();
        EXPECT_EQ(documentChanged, button == IDOK);
        EXPECT_EQ(Selection(), 1);
    }
}

TEST_F(CommandsTest, SelectionChangesAreRemembered) {
    Open(MakeGif("a.gif"));
    EXPECT_EQ(selectedLine, 65535u);
    Select(2);
    EXPECT_EQ(selectedLine, 2u);
    Select(-1);
    EXPECT_EQ(selectedLine, 2u);
}

TEST_F(CommandsTest, UnknownCommandsDoNothing) {
    Open(MakeGif("a.gif"));
    DialogAnswers none;
    for (int id : {1, 99, 109, 200, 202, 996, 1001, 1999, 2001, 2002, 65535}) Command(id);
    EXPECT_EQ(Lines().size(), 4u);
    EXPECT_FALSE(documentChanged);
}

}  // namespace
