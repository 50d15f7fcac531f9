// The services that every window uses.
#include <filesystem>
#include <new>
#include <stdexcept>

#include "tests/gui/window_driver.h"
#include "texts/strings.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/ids/editor_ids.h"
#include "windows/services/dialogs.h"
#include "windows/services/file_dialogs.h"
#include "windows/services/front_procedure.h"
#include "windows/services/help.h"
#include "windows/services/help_system.h"
#include "windows/services/messages.h"
#include "windows/services/plain_dialog.h"
#include "windows/services/short_path.h"

namespace {

class ServicesTest : public ShellTest {};

TEST_F(ServicesTest, DialogsShowTheirTextsInTheMiddleOfTheScreen) {
    DialogAnswers answers;
    answers.Do([](HWND dialog) {
        EXPECT_EQ(SendMessageW(dialog, WM_GETICON, ICON_BIG, 0), GetClassLongPtrW(hMainWindow, GCLP_HICON));
        SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0);  // Escape: there is no such button
    });
    EXPECT_EQ(YesnoBox(hMainWindow, "caf\xE9 & \x80"), IDNO);
    EXPECT_EQ(answers.Texts(), std::vector<std::string>{"caf\xE9 & \x80"});
    EXPECT_EQ(RunDialog(hMainWindow, L"NoSuchBox", nullptr, nullptr), 0);
    EXPECT_STREQ(LoadStr(kQuirkMissingString), "String table error - this application may be damaged");
    SetWindowPos(hMainWindow, nullptr, 0, 0, 501, 447, SWP_NOZORDER);
    CentreWindow(hMainWindow);
    RECT place = {};
    GetWindowRect(hMainWindow, &place);
    EXPECT_EQ(place.left, (GetSystemMetrics(SM_CXSCREEN) - 501) / 2);
    EXPECT_EQ(place.top, (GetSystemMetrics(SM_CYSCREEN) - 447) / 2);
}

// kQuirkFontHandleBits
TEST_F(ServicesTest, ChildrenGetTheLowHalfOfAFontHandle) {
    SetChildFonts(hMainWindow, hListFont, false);
    const LRESULT given = SendDlgItemMessageW(hMainWindow, IDC_BLOCK_LIST, WM_GETFONT, 0, 0);
    EXPECT_EQ(given, LOWORD(reinterpret_cast<UINT_PTR>(hListFont)));
}

// As it is when memory runs out. Nothing may pass through the system's code on its way here.
TEST_F(ServicesTest, AStepThatFailsEndsItsDialogOnly) {
    auto fail = [](HWND) { throw std::bad_alloc(); };
    EXPECT_EQ(RunPlainDialog(hMainWindow, L"MessageBox", fail), 0);
    DialogAnswers answers;
    answers.Press(IDOK);
    EXPECT_EQ(RunPlainDialog(
                  hMainWindow, L"MessageBox", [](HWND) {}, fail),
              0);
    EXPECT_TRUE(IsWindowEnabled(hMainWindow));

    const DialogKind failing[] = {{L"EditLoopBox", nullptr, [](HWND) -> bool { throw std::length_error(""); }},
                                  {L"EditLoopBox", nullptr, nullptr, [](HWND) -> int { throw std::length_error(""); }}};
    answers.Press(IDOK);  // the message
    EXPECT_EQ(RunEditingDialog(hMainWindow, failing[0], nullptr), 0);
    answers.Do([](HWND dialog) {
        PressButton(dialog, IDOK);  // tells, and leaves the dialog to the user
        PressButton(dialog, IDCANCEL);
    });
    answers.Press(IDOK);
    EXPECT_EQ(RunEditingDialog(hMainWindow, failing[1], nullptr), 0);
    for (size_t message : {1u, 3u}) EXPECT_EQ(answers.Texts()[message], "There has been an error allocating memory.");
}

TEST_F(ServicesTest, TheCommandLineIsWhatFollowsTheProgram) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"klmzep.exe", L""},
        {L"klmzep.exe C:\\a b.gif", L"C:\\a b.gif"},
        {L"\"C:\\Program Files\\klmzep.exe\" \t \"C:\\a.gif\" ", L"\"C:\\a.gif\" "},
        {L"C:\\\"x y\"\\klmzep.exe z", L"z"},
    };
    for (const auto& [line, arguments] : cases) EXPECT_STREQ(CommandLineArguments(line), arguments) << line;
}

TEST_F(ServicesTest, LongPathsKeepTheirEnds) {
    const std::tuple<const wchar_t*, size_t, const wchar_t*> cases[] = {
        {LR"(C:\films\a.gif)", 14, LR"(C:\films\a.gif)"},
        {LR"(C:\films\kites\a.gif)", 18, LR"(C:\films\...\a.gif)"},
        {LR"(C:\films\a\bc\def\a.gif)", 22, LR"(C:\films\...\def\a.gif)"},
        {LR"(C:\films\a\bc\def\a.gif)", 21, LR"(C:\films\...\a.gif)"},
        {LR"(\\server\share\films\kites\a.gif)", 30, LR"(\\server\share\...\kites\a.gif)"},
        {LR"(\\server\share\films\kites\a.gif)", 24, LR"(\\server\...\kites\a.gif)"},
        {LR"(C:\a folder without an end\b\kite.gif)", 20, LR"(C:\...\b\kite.gif)"},
        {LR"(C:\0123456789abcdefghij.gif)", 20, LR"(C:\0123456...hij.gif)"},
        {LR"(C:\films\kites\0123456789abcdefghij.gif)", 30, LR"(C:\films\...\0123456...hij.gif)"},
        {LR"(C:\f\k\0123456789abcdefghij.gif)", 5, LR"(C:\...\0123....gif)"},
        {LR"(0123456789)", 8, LR"(0123...6789)"},
        {L"", 0, L""},
    };
    for (const auto& [path, units, expected] : cases) EXPECT_EQ(ShortPath(path, units), expected) << path;
    // No half of a character stays behind.
    EXPECT_EQ(WithoutMiddle(L"ab\xD83D\xDE00xy\xD83D\xDE00gh", 6), L"ab...gh");
    EXPECT_EQ(NameOfPath(LR"(C:/films\a.gif)"), L"a.gif");
    EXPECT_EQ(NameOfPath(L"a.gif"), L"a.gif");
}

TEST_F(ServicesTest, TheOpenDialogStartsInTheFolderOfAName) {
    MakeGif("a.gif");
    std::string name = File("other.gif");
    DialogAnswers answers;
    answers.ChooseFile("a.gif");  // no folder: it is looked for where the dialog started
    EXPECT_TRUE(OpenGifDialog(hMainWindow, &name));
    EXPECT_EQ(name, File("a.gif"));
}

// kQuirkFilters
TEST_F(ServicesTest, AllFilesAreGifFiles) {
    constexpr int kFilterField = 0x470;  // cmb1 of the system's dialog
    MakeGif("a.gif");
    WriteAll(File("b.txt"), "x");
    DialogAnswers answers;
    answers.Do([](HWND dialog) {
        SendDlgItemMessageW(dialog, kFilterField, WM_KEYDOWN, VK_DOWN, 0);
        EXPECT_EQ(ControlText(dialog, kFilterField), "All files");
        HWND view = FindWindowExW(dialog, nullptr, L"SHELLDLL_DefView", nullptr);
        HWND list = FindWindowExW(view, nullptr, WC_LISTVIEWW, nullptr);
        EXPECT_EQ(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), 1);
        PressButton(dialog, IDCANCEL);
    });
    std::string name = File("other.gif");
    EXPECT_FALSE(OpenGifDialog(hMainWindow, &name));
}

// What the dialog lists, by the kinds of its first filter, and the name of that filter.
TEST_F(ServicesTest, TheDialogForImagesListsWhatItsCallerAndCarefulModeWant) {
    constexpr int kFilterField = 0x470;  // cmb1 of the system's dialog
    MakeGif("a.gif");
    for (const char* name : {"b.png", "c.JPG", "d.jpeg", "e.bmp", "f.txt"}) WriteAll(File(name), "x");
    const std::tuple<ListedKinds, uint32_t, int, const char*> cases[] = {{ListedKinds::kUsual, 0, 1, "GIF files"},
                                                                         {ListedKinds::kUsual, 1, 5, "Pictures"},
                                                                         {ListedKinds::kPictures, 0, 5, "Pictures"},
                                                                         {ListedKinds::kPictures, 1, 5, "Pictures"}};
    for (const auto& [kinds, carefulMode, count, filter] : cases) {
        SCOPED_TRACE(std::to_string(static_cast<int>(kinds)) + std::to_string(carefulMode));
        settings.carefulMode = carefulMode;
        int listed = -1;
        std::string shown;
        DialogAnswers answers;
        answers.Do([&](HWND dialog) {
            SetDlgItemTextW(dialog, FileNameField(dialog), WideFromUtf8(Folder()).c_str());
            PressButton(dialog, IDOK);
            HWND view = FindWindowExW(dialog, nullptr, L"SHELLDLL_DefView", nullptr);
            listed = static_cast<int>(
                SendMessageW(FindWindowExW(view, nullptr, WC_LISTVIEWW, nullptr), LVM_GETITEMCOUNT, 0, 0));
            shown = ControlText(dialog, kFilterField);
            PressButton(dialog, IDCANCEL);
        });
        std::string names;
        EXPECT_FALSE(OpenImagesDialog(hMainWindow, kinds, &names));
        EXPECT_EQ(listed, count);
        EXPECT_EQ(shown, filter);
    }
}

TEST_F(ServicesTest, ANameLongerThanTheSystemTakesIsToldAndLeavesTheOldOne) {
    const std::string folder = File(std::string(150, 'd'));
    std::filesystem::create_directory(WideFromUtf8(folder));
    DialogAnswers answers;
    answers.ChooseFile(folder + "\\" + std::string(256 - folder.size(), 'f') + ".gif");  // 261 characters
    answers.Press(IDOK);
    std::string name = "old.gif";
    EXPECT_FALSE(SaveGifDialog(hMainWindow, &name));
    EXPECT_EQ(
        answers.Texts().back(),
        "This file name is too long. Please use a shorter name or move the file to a folder with a shorter path.");
    EXPECT_EQ(name, "old.gif");
}

// A system of which everything is known: what it can do, and what it was asked for.
struct {
    bool viewerStarts, viewerShows, hasBrowser;
    std::string asked;
} known;

bool CallViewer(HWND, const char* file, UINT command, const void* data) {
    EXPECT_TRUE(command == HELP_KEY && strstr(file, "\\TELVAR.HLP")) << file;
    known.asked += std::string("viewer ") + static_cast<const char*>(data) + ";";
    return known.viewerStarts;
}

bool OpenPage(HWND, const wchar_t* path) {
    known.asked += std::filesystem::path(path).filename().string() + ";";
    return known.hasBrowser;
}

TEST_F(ServicesTest, TheHelpPageIsShownByWhatTheSystemHas) {
    // Whether the help file and the page are there, the viewer starts and shows something, and there is a browser; what
    // comes of it, and what is asked for the same page twice.
    const std::tuple<bool, bool, bool, bool, bool, HelpOutcome, const char*> cases[] = {
        {true, true, true, true, true, HelpOutcome::kInViewer, "viewer loop;viewer loop;"},
        {true, true, false, false, true, HelpOutcome::kInBrowser, "viewer loop;loop.html;loop.html;"},
        {true, true, true, false, true, HelpOutcome::kInBrowser, "viewer loop;loop.html;loop.html;"},
        {false, true, true, true, true, HelpOutcome::kInBrowser, "loop.html;loop.html;"},
        {true, true, true, false, false, HelpOutcome::kNoBrowser, "viewer loop;loop.html;loop.html;"},
        {true, false, false, false, true, HelpOutcome::kNoFiles, "viewer loop;"},
    };
    std::filesystem::create_directory(WideFromUtf8(File("help")));
    for (const auto& [helpFile, page, starts, shows, browser, outcome, asked] : cases) {
        WriteAll(File("TELVAR.HLP"), "x");
        WriteAll(File("help\\loop.html"), "x");
        if (!helpFile) std::filesystem::remove(WideFromUtf8(File("TELVAR.HLP")));
        if (!page) std::filesystem::remove(WideFromUtf8(File("help\\loop.html")));
        known = {starts, shows, browser, ""};
        HelpSystem system = {CallViewer, [] { return known.viewerShows; }, OpenPage, false};
        for (int time = 0; time < 2; ++time)
            EXPECT_EQ(OpenHelp(hMainWindow, File("klmzep.exe"), "loop", &system), outcome) << asked;
        EXPECT_EQ(known.asked, asked);
    }
    const std::string deep = "C:" + std::string(244, 'd');  // 246 and 13 stay below 260
    const std::string fits = deep.substr(1) + "\\", wide = "C:\\" + Repeated("\xE6\xBC\xA2", 100) + "\\";
    const std::pair<std::string, std::string> places[] = {
        {"C:", "C:TELVAR.HLP"}, {fits, fits + "TELVAR.HLP"}, {wide, wide + "TELVAR.HLP"}, {deep + "\\", deep + "\\?"}};
    for (const auto& [folder, help] : places) EXPECT_EQ(HelpFileBeside(folder + "k.exe"), help);
}

// Wine's launcher takes the browsers of the host from the registry.
TEST_F(ServicesTest, ABrowserThatIsNotThereIsNotTakenForOne) {
    const wchar_t key[] = L"Software\\Wine\\WineBrowser", value[] = L"Browsers";
    WriteAll(File("page.html"), "x");
    for (const auto& [browser, found] : {std::pair(L"no-such-browser", false), {L"no-such-browser,true", true}}) {
        const auto bytes = static_cast<DWORD>((wcslen(browser) + 1) * sizeof *browser);
        HKEY browsers = nullptr;
        ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, key, &browsers), ERROR_SUCCESS);
        ASSERT_EQ(RegSetValueExW(browsers, value, 0, REG_SZ, reinterpret_cast<const BYTE*>(browser), bytes),
                  ERROR_SUCCESS);
        EXPECT_EQ(OpenInBrowser(hMainWindow, WideFromUtf8(File("page.html")).c_str()), found);
        RegCloseKey(browsers);
        RegDeleteKeyW(HKEY_CURRENT_USER, key);
    }
}

// No help lies beside the test program.
TEST_F(ServicesTest, MissingHelpIsToldAndLeavesTheDialogWorking) {
    Open(MakeGif("a.gif"));
    DialogAnswers answers;
    answers.Press(IDOK);
    Command(IDM_HELP);
    answers.Do([](HWND dialog) {
        PressButton(dialog, IDC_HELP_BUTTON);
        SetDlgItemInt(dialog, IDC_HEADER_WIDTH, 321, FALSE);
        PressButton(dialog, IDOK);
    });
    answers.Press(IDOK);
    DoubleClick();
    EXPECT_EQ(Lines()[0], "HEADER\xFE GIF89a Screen (321 x 480)");
    for (size_t i : {0u, 2u}) EXPECT_NE(answers.Texts()[i].find("TELVAR.HLP"), std::string::npos) << answers.Texts()[i];
}

std::string whoSaw;

// A procedure for the front that notes its letter for every message of ours.
template <char letter>
LRESULT CALLBACK NotingProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP || message == WM_NCDESTROY) whoSaw += letter;
    return CallBehind(NotingProc<letter>, control, message, wParam, lParam);
}

TEST_F(ServicesTest, FrontProceduresStandBeforeEachOtherAndGoWithTheirWindow) {
    for (int round = 0; round < 2; ++round) {
        HWND edit = CreateWindowW(L"EDIT", L"text", WS_CHILD, 0, 0, 9, 9, hMainWindow, nullptr, hInstance, nullptr);
        HWND other = CreateWindowW(L"EDIT", L"", WS_CHILD, 0, 0, 9, 9, hMainWindow, nullptr, hInstance, nullptr);
        PutInFront(edit, NotingProc<'a'>);
        PutInFront(edit, NotingProc<'b'>);
        PutInFront(edit, NotingProc<'a'>);  // is there already
        PutInFront(other, NotingProc<'c'>);
        whoSaw.clear();
        SendMessageW(edit, WM_APP, 0, 0);
        EXPECT_EQ(GetWindowTextLengthW(edit), 4) << "its own procedure is behind them";
        DestroyWindow(edit);
        EXPECT_EQ(whoSaw, "baba");
        EXPECT_EQ(CallBehind(NotingProc<'a'>, edit, WM_APP, 0, 0), 0);
        SendMessageW(other, WM_APP, 0, 0);
        EXPECT_EQ(whoSaw, "babac");
        DestroyWindow(other);
    }
}

}  // namespace
