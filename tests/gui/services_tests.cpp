// The services that every window uses, and the program's resources.
#include <cstring>
#include <string>

#include "app/about_box.h"
#include "app/information_panel.h"
#include "app/services/dialogs.h"
#include "app/services/file_dialogs.h"
#include "app/services/help.h"
#include "app/services/messages.h"
#include "app/services/settings.h"
#include "app/services/shell_objects.h"
#include "app/start_up.h"
#include "imaging/palette_resources.h"
#include "platform/prompts.h"
#include "platform/wide_text.h"
#include "resources/command_ids.h"
#include "resources/message_ids.h"
#include "resources/panel_ids.h"
#include "resources/string_ids.h"
#include "tests/gui/window_driver.h"

namespace {

class ServicesTest : public ShellTest {};

TEST_F(ServicesTest, TheStringTableIsTheBuiltInOne) {
    const struct {
        unsigned id;
        const char* text;
    } table[] = {
#define STRING(id, text) {id, text},
#include "resources/string_table.inc"
#undef STRING
    };
    for (const auto& entry : table) EXPECT_STREQ(LoadStr(entry.id), entry.text) << entry.id;
}

TEST_F(ServicesTest, MissingStringsGiveTheFallbackText) {
    for (unsigned id : {198u, 1u, 100u, 4000u, 2123u})
        EXPECT_STREQ(LoadStr(id), "String table error - this application may be damaged") << id;
}

TEST_F(ServicesTest, StringsShareOneBuffer) {
    const char* first = LoadStr(IDS_NO_SELECTION);
    EXPECT_EQ(first, LoadStr(IDS_SECOND_LOOP));
    EXPECT_EQ(strncmp(first, "A LOOP block", 12), 0);
}

TEST_F(ServicesTest, PalettesAreAmongTheResources) {
    for (const char* name : {"PALETTE216", "PALETTE256G"}) {
        const uint8_t* bytes = FindPaletteResource(name);
        ASSERT_NE(bytes, nullptr) << name;
        EXPECT_EQ(memcmp(bytes, "QUOXRSRC", 8), 0) << name;
    }
    EXPECT_EQ(FindPaletteResource("PALETTE1"), nullptr);
}

TEST_F(ServicesTest, MessageDialogsAnswerTheirButtons) {
    auto tell = [](HWND owner, const char* text) {
        MessageBox(owner, text);
        return 0;
    };
    auto cancel = [](HWND owner, const char* text) { return YesNoCancelBox(owner, text); };
    auto yesNo = [](HWND owner, const char* text) { return YesnoBox(owner, text); };
    using Ask = int (*)(HWND, const char*);
    const struct {
        Ask ask;
        int pressed, answer;
    } cases[] = {{tell, IDOK, 0},       {cancel, IDYES, IDYES}, {cancel, IDNO, IDNO}, {cancel, IDCANCEL, IDCANCEL},
                 {yesNo, IDYES, IDYES}, {yesNo, IDNO, IDNO}};
    for (const auto& c : cases) {
        DialogAnswers answers;
        answers.Do([&](HWND dialog) {
            int focused = GetDlgCtrlID(GetFocus());
            EXPECT_EQ(focused, c.ask == static_cast<Ask>(tell) ? IDOK : IDYES);
            PressButton(dialog, c.pressed);
        });
        EXPECT_EQ(c.ask(hMainWindow, "caf\xE9 & \x80"), c.answer);
        EXPECT_EQ(answers.Texts(), std::vector<std::string>{"caf\xE9 & \x80"});
        EXPECT_TRUE(IsWindowEnabled(hMainWindow));
    }
}

// The Escape key and the close box of the dialogs send Cancel, also where there is no such button.
TEST_F(ServicesTest, EscapeCountsAsCancelOrNo) {
    auto escape = [](HWND dialog) { SendMessageW(dialog, WM_COMMAND, IDCANCEL, 0); };
    DialogAnswers answers;
    answers.Do(escape);
    answers.Do(escape);
    EXPECT_EQ(YesNoCancelBox(hMainWindow, "?"), IDCANCEL);
    EXPECT_EQ(YesnoBox(hMainWindow, "?"), IDNO);
}

TEST_F(ServicesTest, LongMessagesFitTheirDialog) {
    std::string longest = LoadStr(IDS_GLOBAL_PALETTE_IN_USE);
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        HWND control = GetDlgItem(dialog, IDC_MESSAGE_TEXT);
        RECT room = {};
        GetClientRect(control, &room);
        RECT needed = {0, 0, room.right, 0};
        HDC dc = GetDC(control);
        HGDIOBJ previous = SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0)));
        DrawTextW(dc, WideFrom1252(longest).c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
        SelectObject(dc, previous);
        ReleaseDC(control, dc);
        EXPECT_LE(needed.bottom, room.bottom);
        PressButton(dialog, IDYES);
    });
    YesnoBox(hMainWindow, longest.c_str());
}

TEST_F(ServicesTest, ADialogThatIsMissingCountsAsCancelled) {
    EXPECT_EQ(RunDialog(hMainWindow, L"NoSuchBox", nullptr, nullptr), 0);
}

TEST_F(ServicesTest, WindowsAreCentred) {
    SetWindowPos(hMainWindow, nullptr, 0, 0, 501, 447, SWP_NOZORDER);
    CentreWindow(hMainWindow);
    RECT place = {};
    GetWindowRect(hMainWindow, &place);
    EXPECT_EQ(place.left, (GetSystemMetrics(SM_CXSCREEN) - 501) / 2);
    EXPECT_EQ(place.top, (GetSystemMetrics(SM_CYSCREEN) - 447) / 2);
    EXPECT_EQ(place.right - place.left, 501);
    EXPECT_EQ(place.bottom - place.top, 447);
}

TEST_F(ServicesTest, ControlsHaveTheFaceColour) {
    HDC dc = GetDC(hMainWindow);
    constexpr UINT kMessages[] = {WM_CTLCOLORMSGBOX, WM_CTLCOLORBTN, WM_CTLCOLORDLG, WM_CTLCOLORSTATIC};
    for (UINT message : kMessages) {
        LRESULT brush =
            SendMessageW(hMainWindow, message, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(hMainWindow));
        EXPECT_EQ(reinterpret_cast<HBRUSH>(brush), hFaceBrush);
        EXPECT_EQ(GetBkColor(dc), GetSysColor(COLOR_BTNFACE));
        EXPECT_EQ(GetTextColor(dc), GetSysColor(COLOR_WINDOWTEXT));
    }
    ReleaseDC(hMainWindow, dc);
}

TEST_F(ServicesTest, TheHelpFileLiesBesideTheProgram) {
    std::string deep = "C:\\" + std::string(244, 'd') + "\\";  // 248 bytes
    const struct {
        std::string program, help;
    } cases[] = {
        {"C:\\Zephyr\\klmzep.exe", "C:\\Zephyr\\TELVAR.HLP"},
        {"C:klmzep.exe", "C:TELVAR.HLP"},
        {deep.substr(2) + "k.exe", deep.substr(2) + "TELVAR.HLP"},  // 246 and 13 stay below 260
        {deep.substr(1) + "k.exe", deep.substr(1) + "?"},
        {deep + "k.exe", deep + "?"},
        {"C:\\" + std::string(300, 'd') + "\\k.exe", ("C:\\" + std::string(300, 'd')).substr(0, 258) + "?"},
    };
    for (const auto& c : cases) {
        char path[kPathBytes] = "";
        HelpFileBeside(c.program.c_str(), path);
        EXPECT_EQ(path, c.help);
    }
}

TEST_F(ServicesTest, ThePanelKeepsItsCheckBox) {
    for (bool show : {false, true}) {
        DialogAnswers answers;
        answers.Do([show](HWND dialog) {
            EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_SHOW_AGAIN) == BST_CHECKED, !show);
            ClickBox(dialog, IDC_SHOW_AGAIN);
            PressButton(dialog, IDOK);
        });
        Command(IDM_INFORMATION);
        EXPECT_EQ(settings.showStartupBanner, show ? 1u : 0u);
    }
}

TEST_F(ServicesTest, TheAboutBoxTellsVersionAndBuild) {
    DialogAnswers answers;
    answers.Do([](HWND dialog) {
        EXPECT_EQ(ControlText(dialog, IDC_VERSION_LINE).rfind("Version ", 0), 0u);
        EXPECT_GT(ControlText(dialog, IDC_BUILD_LINE).size(), strlen("Build "));
        PressButton(dialog, IDOK);
    });
    Command(IDM_ABOUT);
}

TEST_F(ServicesTest, TheCommandLineIsWhatFollowsTheProgram) {
    const struct {
        const wchar_t *line, *arguments;
    } cases[] = {
        {L"klmzep.exe", L""},
        {L"klmzep.exe ", L""},
        {L"klmzep.exe C:\\a b.gif", L"C:\\a b.gif"},
        {L"\"C:\\Program Files\\klmzep.exe\" \t \"C:\\a.gif\" ", L"\"C:\\a.gif\" "},
        {L"C:\\\"x y\"\\klmzep.exe z", L"z"},
        {L"", L""},
    };
    for (const auto& c : cases) EXPECT_STREQ(CommandLineArguments(c.line), c.arguments) << c.line;
}

TEST_F(ServicesTest, TheOpenDialogStartsInTheFolderOfAName) {
    MakeGif("a.gif");
    char name[kPathBytes];
    strcpy(name, File("other.gif").c_str());
    DialogAnswers answers;
    answers.ChooseFile("a.gif");  // no folder: it is looked for where the dialog started
    EXPECT_TRUE(OpenGifDialog(hMainWindow, name));
    EXPECT_EQ(name, File("a.gif"));
}

TEST_F(ServicesTest, CancelledFileDialogsChangeNothing) {
    char name[kPathBytes] = "keep.gif";
    std::vector<char> names(kImagesBufferBytes);
    DialogAnswers answers;
    for (int i = 0; i < 3; ++i) answers.Press(IDCANCEL);
    EXPECT_FALSE(OpenGifDialog(hMainWindow, name));
    EXPECT_FALSE(SaveGifDialog(hMainWindow, name));
    EXPECT_FALSE(OpenImagesDialog(hMainWindow, names.data()));
    EXPECT_STREQ(name, "keep.gif");
    EXPECT_EQ(names[0], 0);
}

TEST_F(ServicesTest, SeveralImagesComeAsAFolderAndNames) {
    MakeGif("a.gif");
    MakeGif("B.gif");
    const struct {
        std::vector<std::string> chosen, names;
    } cases[] = {{{"a.gif"}, {File("a.gif")}},
                 {{"a.gif", "B.gif"}, {Folder().substr(0, Folder().size() - 1), "a.gif", "B.gif"}}};
    for (const auto& c : cases) {
        std::vector<char> names(kImagesBufferBytes);
        DialogAnswers answers;
        answers.ChooseFiles(Folder(), c.chosen);
        ASSERT_TRUE(OpenImagesDialog(hMainWindow, names.data()));
        const char* at = names.data();
        for (const std::string& name : c.names) {
            EXPECT_EQ(at, name);
            at += strlen(at) + 1;
        }
        EXPECT_EQ(*at, 0) << "nothing after the last name";
    }
}

}  // namespace
