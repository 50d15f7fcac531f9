// The program from its start to its end, with the message loop running.
#include "app/start_up.h"

#include <functional>

#include "app/main_window.h"
#include "app/services/settings.h"
#include "app/services/shell_objects.h"
#include "app/shell_state.h"
#include "resources/command_ids.h"
#include "resources/panel_ids.h"
#include "tests/gui/window_driver.h"

namespace {

class StartUpTest : public ShellTest {
protected:
    void SetUp() override { StartAfresh(); }

    // Runs the editor; once its window waits for the user, `look` is called and the program told to exit.
    void Run(const std::string& commandLine, std::function<void()> look) {
        look_ = look;
        UINT_PTR timer = SetTimer(nullptr, 0, 20, OnTimer);
        RunEditor(GetModuleHandleW(nullptr), nullptr, commandLine.c_str(), SW_SHOW);
        KillTimer(nullptr, timer);
        EXPECT_FALSE(look_) << "the window never waited for the user";
    }

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
        if (!look_ || !IsWindowEnabled(hMainWindow)) return;
        std::function<void()> look = std::move(look_);
        look_ = nullptr;
        look();
        PostMessageW(hMainWindow, WM_COMMAND, IDM_EXIT, 0);
    }

    inline static std::function<void()> look_;
};

TEST_F(StartUpTest, ShowsThePanelAndRemembersItsBox) {
    DialogAnswers answers;
    answers.Do([](HWND dialog) {
        ClickBox(dialog, IDC_SHOW_AGAIN);
        PressButton(dialog, IDOK);
    });
    Run("", [this] {
        EXPECT_EQ(Title(), "Kelmor Zephyr [ NO FILE ] ");
        EXPECT_TRUE(Lines().empty());
        EXPECT_FALSE(IsEnabled(IDM_SAVE));
    });
    Run("", [] {});  // no panel the second time
    EXPECT_NE(ReadWholeFile(File("KLMZEP.INI")).find("ShowStartupBanner = 0\r\n"), std::string::npos);
}

TEST_F(StartUpTest, OpensTheFileOfTheCommandLine) {
    std::string path = MakeGif("a b.gif");
    DialogAnswers noPanel;
    WriteWholeFile(File("KLMZEP.INI"),
                   "Show = 0\r\nFileMenuRange = 2\r\nFileMenuItem = C:\\1.gif\r\nFileMenuItem = C:\\2.gif\r\n");
    Run(path, [&] {
        EXPECT_EQ(Title(), "Kelmor Zephyr [ " + path + " ] ");
        EXPECT_EQ(Lines().size(), 4u);
        EXPECT_EQ(RecentFiles(), (std::vector<std::string>{path, "C:\\2.gif"}));
    });
    EXPECT_EQ(document.blocks, nullptr);
    EXPECT_EQ(hListFont, nullptr);
    EXPECT_EQ(hFaceBrush, nullptr);
    WNDCLASSW description;
    EXPECT_FALSE(GetClassInfoW(hInstance, kMainWindowClass, &description));
}

TEST_F(StartUpTest, ReadsTheDitheringSettingsOfTheWindowsDirectory) {
    settings.showStartupBanner = 0;
    for (const wchar_t* given : {L"35", static_cast<const wchar_t*>(nullptr)}) {
        WritePrivateProfileStringW(L"Telvar", L"DitherBrightness", given, L"TELVAR.INI");
        Run("", [] {});
        EXPECT_EQ(ditherSettings.brightness, given ? 35u : 20u);
        EXPECT_EQ(ditherSettings.contrast, 20u);
    }
}

TEST_F(StartUpTest, TheCloseBoxEndsTheProgramWithADocumentStillOpen) {
    std::string path = MakeGif("a.gif");
    settings.showStartupBanner = 0;
    DialogAnswers answers;
    answers.Press(IDCANCEL);
    Run(path, [] {
        documentChanged = true;
        SendMessageW(hMainWindow, WM_SYSCOMMAND, SC_CLOSE, 0);
    });
    EXPECT_EQ(document.blocks, nullptr);
}

}  // namespace
