// Creating, loading, saving and discarding documents through the main window.
#include <cstring>

#include "app/main_window.h"
#include "app/services/shell_objects.h"
#include "app/shell_state.h"
#include "platform/faults.h"
#include "resources/command_ids.h"
#include "tests/gui/window_driver.h"

namespace {

constexpr char kSaveQuestion[] = "Your current GIF file has been changed. Do you wish to save it?";
constexpr char kWriteFailed[] = "There has been an error writing this file.";
constexpr char kOpenFailed[] =
    "The file you have attempted to open appears to be corrupt or there was an error allocating memory.";
constexpr char kOutOfMemory[] = "There has been an error allocating memory.";

using Texts = std::vector<std::string>;

class LifecycleTest : public ShellTest {
protected:
    // The title, and that the commands are enabled as they have to be.
    void ExpectFace(const std::string& name) {
        EXPECT_EQ(Title(), "Kelmor Zephyr [ " + name + " ] ");
        for (int id : {IDM_CLOSE, IDM_SAVE, IDM_SAVE_AS, IDM_VIEW, IDM_INSERT, IDM_DELETE})
            EXPECT_EQ(IsEnabled(id), name != "NO FILE") << id;
        for (int id : {IDM_NEW, IDM_OPEN, IDM_WIZARD, IDM_EXIT, IDM_HELP, IDM_INFORMATION, IDM_ABOUT})
            EXPECT_TRUE(IsEnabled(id)) << id;
    }

    // Opens a file of four blocks and deletes the first comment.
    std::string OpenAndChange() {
        std::string path = MakeGif("changed.gif");
        Open(path);
        Select(1);
        Command(IDM_DELETE);
        EXPECT_TRUE(documentChanged);
        return path;
    }
};

TEST_F(LifecycleTest, NewShowsOneHeaderAndClosesUnasked) {
    Command(IDM_NEW);
    ExpectFace("untitled.gif");
    EXPECT_EQ(Lines(), Texts{"HEADER\xFE GIF89a Screen (640 x 480)"});
    EXPECT_EQ(Selection(), 0);
    EXPECT_EQ(selectedLine, 65535u);
    EXPECT_FALSE(documentChanged);
    DialogAnswers none;
    Command(IDM_EXIT);
    EXPECT_FALSE(IsWindow(hMainWindow));
}

TEST_F(LifecycleTest, OpensAFileNamedByTheMessage) {
    std::string path = MakeGif("\xC3\xA9t\xC3\xA9 \xE6\xBC\xA2.gif", 30, 20);  // beyond any one ANSI code page
    Open(path);
    for (const char* nothing : {static_cast<const char*>(nullptr), ""})
        SendMessageW(hMainWindow, UM_OPENFILE, 0, reinterpret_cast<LPARAM>(nothing));
    ExpectFace(path);
    EXPECT_EQ(Lines(), (Texts{"HEADER\xFE GIF89a Screen (640 x 480)", "COMMENT\xFE This space for rent...",
                              "IMAGE\xFE 30 x 20, 256 colours", "COMMENT\xFE FILE IDENTITY"}));
    EXPECT_EQ(Selection(), 0);
    EXPECT_EQ(path, currentFileName);
    EXPECT_EQ(RecentFiles(), Texts{path});
}

TEST_F(LifecycleTest, AFileThatCannotBeReadLeavesNoDocument) {
    std::string first = MakeGif("first.gif");
    WriteWholeFile(File("broken.gif"), std::string("GIF89a\1\0\1\0\0\0\0,\0\0", 16));
    const std::pair<std::string, std::string> cases[] = {
        {File("missing.gif"), kOpenFailed},
        {"\"" + first + "\"", kOpenFailed},
        {File("broken.gif"), kOpenFailed},
        {File(std::string(300, 'x') + ".gif"),
         "This file can't be opened, as its name with all its folders is too long."},
    };
    for (const auto& [name, message] : cases) {
        Open(first);
        DialogAnswers answers;
        answers.Press(IDOK);
        SendMessageW(hMainWindow, UM_OPENFILE, 0, reinterpret_cast<LPARAM>(name.c_str()));
        EXPECT_EQ(answers.Texts(), Texts{message});
        ExpectFace("NO FILE");
        EXPECT_TRUE(Lines().empty());
        EXPECT_EQ(document.count, 0u);
        EXPECT_EQ(first, currentFileName) << "an open that fails keeps the name";
    }
    EXPECT_EQ(RecentFiles(), Texts{first});
}

TEST_F(LifecycleTest, AFileWithoutASignatureOpensWithoutBlocks) {
    WriteWholeFile(File("text.gif"), std::string(200, 'x'));
    Open(File("text.gif"));
    ExpectFace(File("text.gif"));
    EXPECT_TRUE(Lines().empty());
    DialogAnswers answers;
    answers.Press(IDOK);
    Command(IDM_SAVE);
    EXPECT_EQ(answers.Texts(), Texts{kWriteFailed});
    EXPECT_EQ(ReadWholeFile(File("text.gif")), std::string(200, 'x')) << "what can't be saved is not harmed";
}

TEST_F(LifecycleTest, CloseLeavesTheOldLinesBehind) {
    Open(MakeGif("a.gif"));
    Command(IDM_CLOSE);
    ExpectFace("NO FILE");
    EXPECT_EQ(Lines().size(), 4u);
    EXPECT_EQ(document.blocks, nullptr);
    DialogAnswers answers;
    answers.Press(IDOK);
    DoubleClick();
    EXPECT_EQ(answers.Texts(), Texts{"String table error - this application may be damaged"});
}

TEST_F(LifecycleTest, SaveFitsTheScreenToTheImagesAndKeepsTheSelection) {
    std::string path = MakeGif("a.gif", 200, 100);
    Open(path);
    Select(2);
    documentChanged = true;
    Command(IDM_SAVE);
    EXPECT_EQ(Lines()[0], "HEADER\xFE GIF89a Screen (200 x 100)");
    EXPECT_EQ(Lines().size(), 4u);
    EXPECT_EQ(Selection(), 2);
    EXPECT_FALSE(documentChanged);
    Open(path);
    EXPECT_EQ(Lines()[0], "HEADER\xFE GIF89a Screen (200 x 100)");
}

TEST_F(LifecycleTest, SaveOfANewDocumentAsksForANameTheFirstTime) {
    std::string path = File("new.gif");
    DialogAnswers answers;
    answers.ChooseFile(path);
    for (bool first : {true, false}) {  // the second new document is written straight over the first one
        Command(IDM_NEW);
        documentChanged = true;
        Command(IDM_SAVE);
        ExpectFace(path);
        EXPECT_EQ(path, currentFileName);
        EXPECT_FALSE(documentChanged);
        EXPECT_EQ(RecentFiles().empty(), first) << "only opening a file lists it";
        Open(path);
        EXPECT_EQ(Lines().size(), 2u) << "the header and the file-identity comment";
    }
}

TEST_F(LifecycleTest, ASaveThatIsCancelledOrFailsKeepsTheDocumentChanged) {
    std::string path = OpenAndChange();
    DialogAnswers answers;
    answers.Do([](HWND dialog) {
        EXPECT_EQ(ControlText(dialog, FileNameField(dialog)), "untitled.gif");
        PressButton(dialog, IDCANCEL);
    });
    answers.Press(IDOK);
    Command(IDM_SAVE_AS);
    faults.writesUntilFailure = 0;
    Command(IDM_SAVE);
    faults.writesUntilFailure = Faults::kNever;
    EXPECT_EQ(answers.Texts().back(), kWriteFailed);
    ExpectFace(path);
    EXPECT_TRUE(documentChanged);
    EXPECT_EQ(document.count, 3u);
}

TEST_F(LifecycleTest, MemoryRunningOutIsTold) {
    std::string path = MakeGif("a.gif");
    for (bool isNew : {true, false}) {
        Open(path);
        DialogAnswers answers;
        answers.Press(IDOK);
        faults.allocationsUntilFailure = 0;
        isNew ? Command(IDM_NEW) : Open(path);
        faults.allocationsUntilFailure = Faults::kNever;
        EXPECT_EQ(answers.Texts(), Texts{kOutOfMemory});
        EXPECT_EQ(document.count, 0u);
        ExpectFace("NO FILE");
    }
}

// What becomes of a changed document when a command that discards it asks first.
class SaveQuestionTest : public LifecycleTest, public testing::WithParamInterface<std::tuple<int, int>> {};

TEST_P(SaveQuestionTest, DecidesAboutTheChangedDocument) {
    auto [command, answer] = GetParam();
    bool gone = answer != IDCANCEL;
    std::string other = MakeGif("other.gif");
    Open(other);
    std::string path = OpenAndChange();
    std::string before = ReadWholeFile(path);
    DialogAnswers answers;
    if (command == IDM_OPEN) answers.ChooseFile(other);
    answers.Press(answer);
    if (command == IDM_WIZARD && gone) answers.Press(IDCANCEL);
    if (command == SC_CLOSE)
        SendMessageW(hMainWindow, WM_SYSCOMMAND, SC_CLOSE | 3, 0);
    else
        Command(command);
    EXPECT_EQ(answers.Texts()[command == IDM_OPEN ? 1 : 0], kSaveQuestion);
    EXPECT_EQ(ReadWholeFile(path) != before, answer == IDYES);
    EXPECT_EQ(documentChanged, !gone);
    EXPECT_EQ(document.count == 3, !gone);
    // The close box ends the program even when the question was cancelled.
    bool ends = command == SC_CLOSE || (command == IDM_EXIT && gone);
    EXPECT_EQ(IsWindow(hMainWindow), ends ? FALSE : TRUE);
    if (gone && (command == IDM_OPEN || command == IDM_RECENT_FIRST + 1)) ExpectFace(other);
    if (gone && command == IDM_NEW) ExpectFace("untitled.gif");
}

INSTANTIATE_TEST_SUITE_P(Commands, SaveQuestionTest,
                         testing::Combine(testing::Values(IDM_NEW, IDM_OPEN, IDM_CLOSE, IDM_WIZARD, IDM_EXIT,
                                                          IDM_RECENT_FIRST + 1, SC_CLOSE),
                                          testing::Values(IDYES, IDNO, IDCANCEL)));

TEST_F(LifecycleTest, YesWithACancelledSaveStillDiscards) {
    Command(IDM_NEW);
    documentChanged = true;
    DialogAnswers answers;
    answers.Press(IDYES);
    answers.Press(IDCANCEL);
    Command(IDM_CLOSE);
    ExpectFace("NO FILE");
    EXPECT_FALSE(documentChanged);
}

TEST_F(LifecycleTest, TheSessionMayEndUnasked) {
    OpenAndChange();
    DialogAnswers none;
    EXPECT_EQ(SendMessageW(hMainWindow, WM_QUERYENDSESSION, 0, 0), TRUE);
}

}  // namespace
