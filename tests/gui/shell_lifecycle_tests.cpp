// Creating, loading, saving and discarding documents through the main window.
#include <cstring>

#include "app/main_window.h"
#include "app/services/shell_objects.h"
#include "app/shell_state.h"
#include "gif/gif_reader.h"
#include "gif/gif_writer.h"
#include "platform/faults.h"
#include "resources/command_ids.h"
#include "tests/gui/window_driver.h"

namespace {

constexpr char kNoFileTitle[] = "Kelmor Zephyr [ NO FILE ] ";
constexpr char kUntitledTitle[] = "Kelmor Zephyr [ untitled.gif ] ";
constexpr char kSaveQuestion[] = "Your current GIF file has been changed. Do you wish to save it?";
constexpr char kWriteFailed[] = "There has been an error writing this file.";
constexpr char kOpenFailed[] =
    "The file you have attempted to open appears to be corrupt or there was an error allocating memory.";
constexpr char kOutOfMemory[] = "There has been an error allocating memory.";

using Texts = std::vector<std::string>;

class LifecycleTest : public ShellTest {
protected:
    void ExpectDocumentCommands(bool enabled) {
        for (int id : {IDM_CLOSE, IDM_SAVE, IDM_SAVE_AS, IDM_VIEW, IDM_INSERT, IDM_DELETE})
            EXPECT_EQ(IsEnabled(id), enabled) << id;
        for (int id : {IDM_NEW, IDM_OPEN, IDM_WIZARD, IDM_EXIT, IDM_HELP, IDM_INFORMATION, IDM_ABOUT})
            EXPECT_TRUE(IsEnabled(id)) << id;
    }

    std::string TitleOf(const std::string& path) { return "Kelmor Zephyr [ " + path + " ] "; }

    // Opens a file of three blocks and deletes the comment.
    std::string OpenAndChange() {
        std::string path = MakeGif("changed.gif");
        Open(path);
        Select(1);
        Command(IDM_DELETE);
        EXPECT_TRUE(documentChanged);
        return path;
    }

    static size_t BlocksIn(const std::string& path) {
        BlockList list;
        EXPECT_TRUE(CreateBlockList(&list));
        EXPECT_EQ(ReadGifFile(&list, path.c_str()), kReadDone);
        size_t count = list.count;
        DestroyBlockList(&list);
        return count;
    }
};

TEST_F(LifecycleTest, StartsWithoutADocument) {
    EXPECT_EQ(Title(), kNoFileTitle);
    EXPECT_TRUE(Lines().empty());
    ExpectDocumentCommands(false);
}

TEST_F(LifecycleTest, NewShowsOneHeaderAndClosesUnasked) {
    Command(IDM_NEW);
    EXPECT_EQ(Title(), kUntitledTitle);
    EXPECT_EQ(Lines(), Texts{"HEADER\xFE GIF89a Screen (640 x 480)"});
    EXPECT_EQ(Selection(), 0);
    EXPECT_EQ(selectedLine, 65535u);
    ExpectDocumentCommands(true);
    EXPECT_FALSE(documentChanged);
    DialogAnswers none;
    Command(IDM_EXIT);
    EXPECT_FALSE(IsWindow(hMainWindow));
}

TEST_F(LifecycleTest, OpensAFileNamedByTheMessage) {
    std::string path = MakeGif("\xC3\xA9t\xC3\xA9 \xE6\xBC\xA2.gif", 30, 20);  // beyond any one ANSI code page
    Open(path);
    EXPECT_EQ(Title(), TitleOf(path));
    EXPECT_EQ(Lines(), (Texts{"HEADER\xFE GIF89a Screen (640 x 480)", "COMMENT\xFE This space for rent...",
                              "IMAGE\xFE 30 x 20, 256 colours", "COMMENT\xFE FILE IDENTITY"}));
    EXPECT_EQ(Selection(), 0);
    EXPECT_EQ(path, currentFileName);
    EXPECT_EQ(RecentFiles(), Texts{path});
    ExpectDocumentCommands(true);
}

TEST_F(LifecycleTest, AFileThatCannotBeReadLeavesNoDocument) {
    WriteWholeFile(File("broken.gif"), std::string("GIF89a\1\0\1\0\0\0\0,\0\0", 16));
    const struct {
        std::string name, message;
    } cases[] = {
        {File("missing.gif"), kOpenFailed},
        {"\"" + File("quoted.gif") + "\"", kOpenFailed},
        {File("broken.gif"), kOpenFailed},
        {File(std::string(300, 'x') + ".gif"),
         "This file can't be opened, as its name with all its folders is too long."},
    };
    std::string first = MakeGif("first.gif");
    for (const auto& c : cases) {
        Open(first);
        DialogAnswers answers;
        answers.Press(IDOK);
        Open(c.name);
        EXPECT_EQ(answers.Texts(), Texts{c.message});
        EXPECT_EQ(Title(), kNoFileTitle) << c.name;
        EXPECT_TRUE(Lines().empty());
        EXPECT_EQ(document.count, 0u);
        EXPECT_EQ(first, currentFileName) << "an open that fails keeps the name";
        ExpectDocumentCommands(false);
    }
    EXPECT_EQ(RecentFiles(), Texts{first});
}

TEST_F(LifecycleTest, AFileWithoutASignatureOpensWithoutBlocks) {
    WriteWholeFile(File("text.gif"), std::string(200, 'x'));
    Open(File("text.gif"));
    EXPECT_EQ(Title(), TitleOf(File("text.gif")));
    EXPECT_EQ(document.count, 0u);
    EXPECT_TRUE(Lines().empty());
    ExpectDocumentCommands(true);
    DialogAnswers answers;
    answers.Press(IDOK);
    Command(IDM_SAVE);
    EXPECT_EQ(answers.Texts(), Texts{kWriteFailed});
    EXPECT_EQ(ReadWholeFile(File("text.gif")), std::string(200, 'x')) << "what can't be saved is not harmed";
}

TEST_F(LifecycleTest, AnEmptyOrMissingNameOpensNothing) {
    Open(MakeGif("a.gif"));
    SendMessageW(hMainWindow, UM_OPENFILE, 0, 0);
    SendMessageW(hMainWindow, UM_OPENFILE, 0, reinterpret_cast<LPARAM>(""));
    EXPECT_EQ(Lines().size(), 4u);
    EXPECT_EQ(document.count, 4u);
}

TEST_F(LifecycleTest, CloseLeavesTheOldLinesBehind) {
    Open(MakeGif("a.gif"));
    Command(IDM_CLOSE);
    EXPECT_EQ(Title(), kNoFileTitle);
    EXPECT_EQ(Lines().size(), 4u);
    EXPECT_EQ(document.blocks, nullptr);
    ExpectDocumentCommands(false);
    DialogAnswers answers;
    answers.Press(IDOK);
    DoubleClick();
    EXPECT_EQ(answers.Texts(), Texts{"String table error - this application may be damaged"});
}

TEST_F(LifecycleTest, SaveWritesOverTheLastFileAfterNew) {
    std::string path = MakeGif("last.gif");
    Open(path);
    Command(IDM_CLOSE);
    Command(IDM_NEW);
    Command(IDM_SAVE);
    EXPECT_EQ(Title(), TitleOf(path));
    EXPECT_EQ(BlocksIn(path), 2u) << "the header and the file-identity comment";
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

TEST_F(LifecycleTest, SaveOfANewDocumentAsksForAName) {
    Command(IDM_NEW);
    documentChanged = true;
    std::string path = File("new.gif");
    DialogAnswers answers;
    answers.ChooseFile(path);
    Command(IDM_SAVE);
    EXPECT_EQ(Title(), TitleOf(path));
    EXPECT_EQ(path, currentFileName);
    EXPECT_FALSE(documentChanged);
    EXPECT_EQ(BlocksIn(path), 2u);
    EXPECT_TRUE(RecentFiles().empty()) << "only opening a file lists it";
}

TEST_F(LifecycleTest, SaveAsProposesUntitledAndCancelKeepsEverything) {
    std::string path = OpenAndChange();
    DialogAnswers answers;
    answers.Do([](HWND dialog) {
        EXPECT_EQ(ControlText(dialog, FileNameField(dialog)), "untitled.gif");
        PressButton(dialog, IDCANCEL);
    });
    Command(IDM_SAVE_AS);
    EXPECT_EQ(Title(), TitleOf(path));
    EXPECT_TRUE(documentChanged);
}

TEST_F(LifecycleTest, AFailedSaveIsToldAndKeepsTheDocumentChanged) {
    std::string path = OpenAndChange();
    faults.writesUntilFailure = 0;
    DialogAnswers answers;
    answers.Press(IDOK);
    Command(IDM_SAVE);
    faults.writesUntilFailure = Faults::kNever;
    EXPECT_EQ(answers.Texts(), Texts{kWriteFailed});
    EXPECT_EQ(Title(), TitleOf(path));
    EXPECT_TRUE(documentChanged);
    EXPECT_EQ(document.count, 3u);
}

TEST_F(LifecycleTest, MemoryRunningOutIsTold) {
    for (int command : {IDM_NEW, 0}) {
        Open(MakeGif("a.gif"));
        DialogAnswers answers;
        answers.Press(IDOK);
        faults.allocationsUntilFailure = 0;
        if (command)
            Command(command);
        else
            Open(File("a.gif"));
        faults.allocationsUntilFailure = Faults::kNever;
        EXPECT_EQ(answers.Texts(), Texts{kOutOfMemory});
        EXPECT_EQ(document.count, 0u);
        ExpectDocumentCommands(false);
    }
}

// What becomes of a changed document when a command that discards it asks first.
struct QuestionCase {
    int command;
    int answer;
    bool saved, gone;
};

class SaveQuestionTest : public LifecycleTest, public testing::WithParamInterface<QuestionCase> {};

TEST_P(SaveQuestionTest, DecidesAboutTheChangedDocument) {
    QuestionCase c = GetParam();
    std::string other = MakeGif("other.gif");
    Open(other);
    std::string path = OpenAndChange();
    std::string before = ReadWholeFile(path);
    DialogAnswers answers;
    if (c.command == IDM_OPEN) answers.ChooseFile(other);
    answers.Press(c.answer);
    if (c.command == IDM_WIZARD && c.gone) answers.Press(IDCANCEL);
    int command = c.command == IDM_RECENT_FIRST ? IDM_RECENT_FIRST + 1 : c.command;
    if (c.command == SC_CLOSE)
        SendMessageW(hMainWindow, WM_SYSCOMMAND, SC_CLOSE | 3, 0);
    else
        Command(command);
    EXPECT_EQ(answers.Texts()[c.command == IDM_OPEN ? 1 : 0], kSaveQuestion);
    EXPECT_EQ(ReadWholeFile(path) != before, c.saved);
    EXPECT_EQ(documentChanged, !c.gone);
    bool ends = c.command == SC_CLOSE || (c.command == IDM_EXIT && c.gone);
    EXPECT_EQ(IsWindow(hMainWindow), ends ? FALSE : TRUE);
    if (!c.gone) {
        EXPECT_EQ(document.count, 3u);
    } else if (c.command == IDM_OPEN || c.command == IDM_RECENT_FIRST) {
        EXPECT_EQ(Title(), TitleOf(other));
    } else if (c.command == IDM_NEW) {
        EXPECT_EQ(Title(), kUntitledTitle);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Commands, SaveQuestionTest,
    testing::Values(QuestionCase{IDM_NEW, IDYES, true, true}, QuestionCase{IDM_NEW, IDNO, false, true},
                    QuestionCase{IDM_NEW, IDCANCEL, false, false}, QuestionCase{IDM_OPEN, IDYES, true, true},
                    QuestionCase{IDM_OPEN, IDNO, false, true}, QuestionCase{IDM_OPEN, IDCANCEL, false, false},
                    QuestionCase{IDM_CLOSE, IDYES, true, true}, QuestionCase{IDM_CLOSE, IDNO, false, true},
                    QuestionCase{IDM_CLOSE, IDCANCEL, false, false}, QuestionCase{IDM_WIZARD, IDNO, false, true},
                    QuestionCase{IDM_WIZARD, IDCANCEL, false, false}, QuestionCase{IDM_EXIT, IDYES, true, true},
                    QuestionCase{IDM_EXIT, IDNO, false, true}, QuestionCase{IDM_EXIT, IDCANCEL, false, false},
                    QuestionCase{IDM_RECENT_FIRST, IDYES, true, true},
                    QuestionCase{IDM_RECENT_FIRST, IDNO, false, true},
                    QuestionCase{IDM_RECENT_FIRST, IDCANCEL, false, false}, QuestionCase{SC_CLOSE, IDNO, false, true},
                    // The close box ends the program even so.
                    QuestionCase{SC_CLOSE, IDCANCEL, false, false}));

TEST_F(LifecycleTest, YesWithACancelledSaveStillDiscards) {
    Command(IDM_NEW);
    documentChanged = true;
    DialogAnswers answers;
    answers.Press(IDYES);
    answers.Press(IDCANCEL);
    Command(IDM_CLOSE);
    EXPECT_EQ(Title(), kNoFileTitle);
    EXPECT_FALSE(documentChanged);
}

TEST_F(LifecycleTest, TheSessionMayEndUnasked) {
    OpenAndChange();
    DialogAnswers none;
    EXPECT_EQ(SendMessageW(hMainWindow, WM_QUERYENDSESSION, 0, 0), TRUE);
}

}  // namespace
