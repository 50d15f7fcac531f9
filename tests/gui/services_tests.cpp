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

TEST_F(ServicesTest, StringsComeFromTheResourcesIntoOneBuffer) {
    const std::pair<unsigned, const char*> table[] = {
#define STRING(id, text) {id, text},
#include "resources/string_table.inc"
#undef STRING
    };
    const char* buffer = LoadStr(IDS_NO_SELECTION);
    for (const auto& [id, text] : table) {
        EXPECT_EQ(LoadStr(id), buffer);
        EXPECT_STREQ(buffer, text) << id;
    }
    for (unsigned id : {198u, 1u, 4000u})
        EXPECT_STREQ(LoadStr(id), "String table error - this application may be damaged");
    EXPECT_EQ(memcmp(FindPaletteResource("PALETTE256G"), "QUOXRSRC", 8), 0);
    EXPECT_EQ(FindPaletteResource("PALETTE1"), nullptr);
}

TEST_F(ServicesTest, MessageDialogsAnswerTheirButtons) {
    using Ask = int (*)(HWND, const char*);
    const Ask tell = [](HWND owner, const char* text) { return MessageBox(owner, text), 0; };
    const struct {
        Ask ask;
        int focused, pressed, answer;
    } cases[] = {{tell, IDOK, IDOK, 0},
                 {YesNoCancelBox, IDYES, IDYES, IDYES},
                 {YesNoCancelBox, IDYES, IDNO, IDNO},
                 {YesNoCancelBox, IDYES, IDCANCEL, IDCANCEL},
                 {YesnoBox, IDYES, IDYES, IDYES},
                 {YesnoBox, IDYES, IDNO, IDNO},
                 {YesnoBox, IDYES, IDCANCEL, IDNO}};  // the Escape key: there is no such button
    for (const auto& c : cases) {
        DialogAnswers answers;
        answers.Do([&](HWND dialog) {
            EXPECT_EQ(GetDlgCtrlID(GetFocus()), c.focused);
            SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(c.pressed), 0);
        });
        EXPECT_EQ(c.ask(hMainWindow, "caf\xE9 & \x80"), c.answer);
        EXPECT_EQ(answers.Texts(), std::vector<std::string>{"caf\xE9 & \x80"});
        EXPECT_TRUE(IsWindowEnabled(hMainWindow));
    }
    EXPECT_EQ(RunDialog(hMainWindow, L"NoSuchBox", nullptr, nullptr), 0);
}

TEST_F(ServicesTest, WindowsAreCentred) {
    SetWindowPos(hMainWindow, nullptr, 0, 0, 501, 447, SWP_NOZORDER);
    CentreWindow(hMainWindow);
    int left = (GetSystemMetrics(SM_CXSCREEN) - 501) / 2, top = (GetSystemMetrics(SM_CYSCREEN) - 447) / 2;
    RECT place = {}, expected = {left, top, left + 501, top + 447};
    GetWindowRect(hMainWindow, &place);
    EXPECT_TRUE(EqualRect(&place, &expected)) << place.left << " " << place.top;
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
    DialogAnswers answers;
    for (auto* run : {OpenGifDialog, SaveGifDialog}) {
        answers.Press(IDCANCEL);
        EXPECT_FALSE(run(hMainWindow, name));
        EXPECT_STREQ(name, "keep.gif");
    }
}

}  // namespace
