// The program from its start to its end, and creating, loading, saving and discarding documents.
#include <climits>
#include <filesystem>

#include "imaging/dither.h"
#include "platform/faults.h"
#include "tests/gui/window_driver.h"
#include "windows/ids/insert_ids.h"
#include "windows/ids/panel_ids.h"

namespace {

constexpr char kWriteFailed[] = "There has been an error writing this file.";
constexpr char kOpenFailed[] =
    "The file you have attempted to open appears to be corrupt or there was an error allocating memory.";

using Texts = std::vector<std::string>;

class LifecycleTest : public ShellTest {
protected:
    // The title, with the blank before kQuirkSecondName, and that the commands are enabled as they have to be.
    void ExpectFace(const std::string& name) {
        EXPECT_EQ(Title(), "Kelmor Zephyr [ " + name + " ] ");
        for (int id : {IDM_CLOSE, IDM_SAVE, IDM_SAVE_AS, IDM_VIEW, IDM_INSERT, IDM_INSERT_PICTURES, IDM_EXPORT_FRAMES, IDM_DELETE, IDM_CHECK, IDM_MAKE_SMALLER})
            EXPECT_EQ(IsEnabled(id), name != "NO FILE") << id;
    }

    // What the message said that came of the act; it is confirmed.
    std::string Told(std::function<void()> act) {
        DialogAnswers answers;
        answers.Press(IDOK);
        act();
        return answers.Texts()[0];
    }

    // Opens a file of four blocks and deletes the first comment.
    std::string OpenAndChange() {
        std::string path = MakeGif("changed.gif");
        Open(path);
        Select(1);
        Command(IDM_DELETE);
        return path;
    }
};

TEST_F(LifecycleTest, TheProgramOpensTheFileOfItsCommandLineAndRemembersItsSettings) {
    TearDown(), StartAfresh();  // it makes the window itself
    std::string path = MakeGif("a b.gif");
    WriteAll(File("KLMZEP.INI"), "FileMenuRange = 2\r\nFileMenuItem = C:\\1.gif\r\nFileMenuItem = C:\\2.gif\r\n");
    WritePrivateProfileStringW(L"Telvar", L"DitherBrightness", L"35", L"TELVAR.INI");
    WritePrivateProfileStringW(L"Telvar", L"DitherContrast", L"4294967301 of 5", L"TELVAR.INI");
    DialogAnswers answers;
    answers.Do([](HWND panel) {
        EXPECT_TRUE(IsDlgButtonChecked(panel, IDC_SHOW_AGAIN));
        ClickBox(panel, IDC_SHOW_AGAIN);
        PressButton(panel, IDOK);
        PostMessageW(hMainWindow, WM_COMMAND, IDM_ABOUT, 0);
    });
    answers.Do([&](HWND about) {
        EXPECT_EQ(ControlText(about, IDC_VERSION_LINE).rfind("Version ", 0), 0u);
        EXPECT_EQ(ControlText(about, IDC_BUILD_LINE).rfind("Build ", 0), 0u);
        EXPECT_EQ(Title(), "Kelmor Zephyr [ " + path + " ] ");
        EXPECT_EQ(RecentFiles(), (Texts{path, "C:\\2.gif"}));
        documentChanged = true;
        PressButton(about, IDOK);
        PostMessageW(hMainWindow, WM_SYSCOMMAND, SC_CLOSE, 0);
    });
    answers.Press(IDCANCEL);  // the question, which doesn't keep the close box from ending the program
    RunEditor(GetModuleHandleW(nullptr), nullptr, path.c_str(), SW_SHOW);
    EXPECT_TRUE(!document.blocks && !hListFont && !hFaceBrush);
    EXPECT_EQ(ditherSettings.brightness, 35);
    EXPECT_EQ(ditherSettings.contrast, INT_MAX) << "no number wraps around";
    WritePrivateProfileStringW(L"Telvar", nullptr, nullptr, L"TELVAR.INI");
    documentChanged = false;
    answers.Do([this](HWND message) {
        EXPECT_TRUE(Title() == "Kelmor Zephyr [ NO FILE ] " && !IsEnabled(IDM_SAVE));
        PressButton(message, IDOK);
        PostMessageW(hMainWindow, WM_COMMAND, IDM_EXIT, 0);
    });
    RunEditor(GetModuleHandleW(nullptr), nullptr, "missing.gif", SW_SHOW);
    EXPECT_EQ(answers.Texts().back(), kOpenFailed) << "no panel the second time";
    EXPECT_EQ(ditherSettings.brightness, 20);
    EXPECT_EQ(ditherSettings.contrast, 20);
}

// kQuirkNameOutlivesDocument
TEST_F(LifecycleTest, ANewDocumentAsksForANameTheFirstTimeItIsSaved) {
    DialogAnswers answers;
    answers.ChooseFile(File("new.gif"));
    for (bool first : {true, false}) {  // the second new document is written straight over the first one
        Command(IDM_NEW);
        ExpectFace("untitled.gif");
        EXPECT_EQ(Lines(), Texts{"HEADER\xFE GIF89a Screen (640 x 480)"});
        EXPECT_TRUE(Selection() == 0 && selectedLine == 65535u && !documentChanged);
        documentChanged = true;
        Command(IDM_SAVE);
        ExpectFace(File("new.gif"));
        EXPECT_TRUE(!documentChanged && RecentFiles().empty() == first) << "only opening a file lists it";
        Open(File("new.gif"));
        EXPECT_EQ(Lines().size(), 2u) << "the header and the file-identity comment";
    }
}

TEST_F(LifecycleTest, OpensAFileNamedByTheMessageAndSavesItWithAFittingScreen) {
    std::string path = MakeGif("\xC3\xA9t\xC3\xA9 \xE6\xBC\xA2.gif", 30, 20);  // beyond any one ANSI code page
    Texts lines = {"HEADER\xFE GIF89a Screen (640 x 480)", "COMMENT\xFE This space for rent...",
                   "IMAGE\xFE 30 x 20, 256 colours", "COMMENT\xFE FILE IDENTITY"};
    Open(path);
    for (LPARAM nothing : {LPARAM{0}, reinterpret_cast<LPARAM>("")}) SendMessageW(hMainWindow, UM_OPENFILE, 0, nothing);
    ExpectFace(path);
    EXPECT_EQ(Lines(), lines);
    EXPECT_TRUE(Selection() == 0 && RecentFiles() == Texts{path});
    Select(2);
    documentChanged = true;
    Command(IDM_SAVE);
    lines[0] = "HEADER\xFE GIF89a Screen (30 x 20)";
    EXPECT_EQ(Lines(), lines);
    EXPECT_TRUE(Selection() == 2 && !documentChanged);
    Open(path);
    EXPECT_EQ(Lines(), lines);
}

// What fits into the system's 260 characters, the one at the end included, works everywhere, whatever it is in UTF-8.
TEST_F(LifecycleTest, NamesMayBeAsLongAsTheSystemTakesInEveryScript) {
    const std::string kHan = "\xE6\xBC\xA2", folder = File(Repeated(kHan, 80));
    std::filesystem::create_directory(WideFromUtf8(folder));
    auto pathTo = [&](const std::string& start) {  // of 259 characters, some 600 bytes
        std::string deep = folder + "\\" + Repeated(kHan, 75);
        std::filesystem::create_directory(WideFromUtf8(deep));
        deep += "\\" + start;
        return deep + Repeated(kHan, 255 - static_cast<int>(WideFromUtf8(deep).size())) + ".gif";
    };
    const std::string path = pathTo("a b"), copy = pathTo("c"), other = MakeGif("other.gif");
    ASSERT_EQ(WideFromUtf8(path).size(), 259u);
    MakeGif(path.substr(Folder().size()));
    {
        DialogAnswers answers;
        answers.ChooseFile(path);
        Command(IDM_OPEN);
    }
    ExpectFace(path);
    EXPECT_EQ(currentFileName, path);
    Open(other);
    Command(IDM_RECENT_FIRST + 1);
    ExpectFace(path);
    EXPECT_EQ(RecentFiles(), (Texts{other, path}));
    {
        DialogAnswers answers;
        answers.Press(IDC_INSERT_IMAGE);
        answers.ChooseFile(path);
        Command(IDM_INSERT);
    }
    EXPECT_EQ(Lines().size(), 5u);
    {
        DialogAnswers answers;
        answers.ChooseFile(copy);
        Command(IDM_SAVE_AS);
    }
    ExpectFace(copy);
    EXPECT_EQ(currentFileName, copy);
    documentChanged = true;
    Command(IDM_SAVE);
    EXPECT_FALSE(documentChanged);
    ASSERT_TRUE(FileExists(copy));
    Open(copy);
    EXPECT_EQ(Lines().size(), 5u);
    {
        const size_t nameAt = path.rfind('\\') + 1;
        DialogAnswers answers;
        answers.Press(IDC_INSERT_IMAGE);
        answers.Do(DialogAnswers::ChooseFiles(
            {path.substr(0, nameAt), "\"" + copy.substr(nameAt) + "\" \"" + path.substr(nameAt) + "\""}));
        Command(IDM_INSERT);
    }
    EXPECT_EQ(Lines().size(), 7u);
}

TEST_F(LifecycleTest, AFileThatCannotBeReadLeavesNoDocument) {
    std::string first = MakeGif("first.gif");
    WriteAll(File("broken.gif"), std::string("GIF89a\1\0\1\0\0\0\0,\0\0", 16));
    const std::pair<std::string, std::string> cases[] = {
        {File("missing.gif"), kOpenFailed},
        {File("broken.gif"), kOpenFailed},
        {File(std::string(300, 'x')), kOpenFailed},
    };
    for (const auto& [name, message] : cases) {
        Open(first);
        auto sent = reinterpret_cast<LPARAM>(name.c_str());
        EXPECT_EQ(Told([=] { SendMessageW(hMainWindow, UM_OPENFILE, 0, sent); }), message);
        ExpectFace("NO FILE");
        EXPECT_TRUE(Lines().empty() && document.count == 0);
        EXPECT_EQ(first, currentFileName) << "an open that fails keeps the name";
    }
    EXPECT_EQ(RecentFiles(), Texts{first});
    Open(first);
    faults.readsUntilFailure = 0;
    EXPECT_EQ(Told([&] { Open(first); }), kOpenFailed) << "the disk, not the end of the file";
    faults.readsUntilFailure = Faults::kNever;
    ExpectFace("NO FILE");
    for (bool isNew : {true, false}) {
        Open(first);
        faults.allocationsUntilFailure = 0;
        EXPECT_EQ(Told([&] { isNew ? Command(IDM_NEW) : Open(first); }), "There has been an error allocating memory.");
        faults.allocationsUntilFailure = Faults::kNever;
        ExpectFace("NO FILE");
    }
}

// kQuirkNoSignatureStillOpens, kQuirkCloseKeepsLines
TEST_F(LifecycleTest, AFileWithoutASignatureOpensWithoutBlocksAndCloseLeavesTheOldLinesBehind) {
    const char kNoHeader[] = "String table error - this application may be damaged";
    WriteAll(File("text.gif"), std::string(200, 'x'));
    Open(File("text.gif"));
    ExpectFace(File("text.gif"));
    EXPECT_TRUE(Lines().empty());
    EXPECT_EQ(Told([&] { Command(IDM_SAVE); }), kWriteFailed);
    EXPECT_EQ(ReadAll(File("text.gif")), Bytes(200, 'x')) << "what can't be saved is not harmed";
    EXPECT_EQ(Told([&] { Command(IDM_VIEW); }), kNoHeader);
    Open(MakeGif("a.gif"));
    Command(IDM_CLOSE);
    ExpectFace("NO FILE");
    EXPECT_TRUE(Lines().size() == 4 && !document.blocks);
    EXPECT_EQ(Told([&] { DoubleClick(); }), kNoHeader);
}

TEST_F(LifecycleTest, ASaveThatIsCancelledOrFailsKeepsTheDocumentButHoldsNothingUp) {
    std::string path = OpenAndChange();
    DialogAnswers answers;
    answers.Do([](HWND dialog) {
        EXPECT_EQ(ControlText(dialog, FileNameField(dialog)), "untitled.gif");
        PressButton(dialog, IDCANCEL);
    });
    for (int button : {IDOK, IDYES, IDOK}) answers.Press(button);
    Command(IDM_SAVE_AS);
    faults.writesUntilFailure = 0;
    Command(IDM_SAVE);
    EXPECT_EQ(answers.Texts().back(), kWriteFailed);
    ExpectFace(path);
    EXPECT_TRUE(documentChanged && document.count == 3);
    EXPECT_EQ(SendMessageW(hMainWindow, WM_QUERYENDSESSION, 0, 0), TRUE) << "unasked";
    Command(IDM_CLOSE);
    faults.writesUntilFailure = Faults::kNever;
    ExpectFace("NO FILE");
}

// What becomes of a changed document when a command that discards it asks first.
TEST_F(LifecycleTest, TheSaveQuestionDecidesAboutTheChangedDocument) {
    for (int command : {IDM_NEW, IDM_OPEN, IDM_CLOSE, IDM_WIZARD, IDM_RECENT_FIRST + 1, IDM_EXIT, SC_CLOSE})
        for (const auto& [answer, careful] :
             {std::pair(IDCANCEL, 0), {IDYES, 0}, {IDNO, 0}, {IDCANCEL, 1}, {IDYES, 1}}) {
            SCOPED_TRACE(testing::Message() << "command " << command << ", answer " << answer << careful);
            const bool gone = answer != IDCANCEL, isCloseBox = command == SC_CLOSE;
            if (!IsWindow(hMainWindow)) TearDown(), SetUp();
            settings.carefulMode = static_cast<uint32_t>(careful);
            documentChanged = false;
            std::string other = MakeGif("other.gif");
            Open(other);
            const std::string path = OpenAndChange();
            const Bytes before = ReadAll(path);
            DialogAnswers answers;
            if (command == IDM_OPEN) answers.ChooseFile(other);
            answers.Press(answer);
            if (command == IDM_WIZARD && gone) answers.Press(IDCANCEL);
            SendMessageW(hMainWindow, isCloseBox ? WM_SYSCOMMAND : WM_COMMAND, WPARAM(command) + 3 * isCloseBox, 0);
            EXPECT_EQ(answers.Texts()[command == IDM_OPEN ? 1 : 0],
                      "Your current GIF file has been changed. Do you wish to save it?");
            EXPECT_EQ(ReadAll(path) != before, answer == IDYES);
            EXPECT_TRUE(documentChanged == !gone && (document.count == 3) == !gone);
            // The close box ends the program even when the question was cancelled: kQuirkCloseBoxIgnoresCancel.
            EXPECT_EQ(!IsWindow(hMainWindow), (isCloseBox && (gone || !careful)) || (command == IDM_EXIT && gone));
            if (gone && (command == IDM_OPEN || command == IDM_RECENT_FIRST + 1)) ExpectFace(other);
        }
}

}  // namespace
