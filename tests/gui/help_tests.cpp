// Where the help appears: in the help viewer, in the browser, or as a message.
#include "app/services/help.h"

#include <string>

#include "app/services/shell_objects.h"
#include "platform/wide_text.h"
#include "resources/command_ids.h"
#include "resources/editor_ids.h"
#include "tests/gui/window_driver.h"

namespace {

// A system of which everything is known: what it can do, and what it was asked for.
struct KnownSystem {
    bool viewerStarts, viewerShows, hasBrowser;
    std::string asked;
};
KnownSystem known;

bool CallViewer(HWND, const char* file, UINT command, const void* data) {
    EXPECT_EQ(command, UINT{HELP_KEY});
    EXPECT_NE(std::string(file).find("\\TELVAR.HLP"), std::string::npos) << file;
    known.asked += std::string("viewer ") + static_cast<const char*>(data) + ";";
    return known.viewerStarts;
}

bool ViewerAppears() {
    return known.viewerShows;
}

bool OpenPage(HWND, const wchar_t* path) {
    std::string name = Utf8FromWide(path);
    known.asked += "page " + name.substr(name.find_last_of('\\') + 1) + ";";
    return known.hasBrowser;
}

class HelpTest : public ShellTest {
protected:
    std::string MakeProgramFolder(const std::string& name, bool helpFile, bool page) {
        std::string folder = Folder() + name + "\\";
        CreateDirectoryW(WideFromUtf8(folder).c_str(), nullptr);
        CreateDirectoryW(WideFromUtf8(folder + "help").c_str(), nullptr);
        if (helpFile) WriteWholeFile(folder + "TELVAR.HLP", "x");
        if (page) WriteWholeFile(folder + "help\\KLMLoop.html", "x");
        return folder + "klmzep.exe";
    }
};

TEST_F(HelpTest, ThePageIsShownByWhatTheSystemHas) {
    const struct {
        bool helpFile, page, starts, shows, browser;
        HelpOutcome first, second;
        const char* asked;
    } cases[] = {
        {true, true, true, true, true, HelpOutcome::kInViewer, HelpOutcome::kInViewer,
         "viewer KLMLoop;viewer KLMLoop;"},
        {true, false, true, true, false, HelpOutcome::kInViewer, HelpOutcome::kInViewer,
         "viewer KLMLoop;viewer KLMLoop;"},
        // A viewer that fails is asked once.
        {true, true, false, false, true, HelpOutcome::kInBrowser, HelpOutcome::kInBrowser,
         "viewer KLMLoop;page KLMLoop.html;page KLMLoop.html;"},
        {true, true, true, false, true, HelpOutcome::kInBrowser, HelpOutcome::kInBrowser,
         "viewer KLMLoop;page KLMLoop.html;page KLMLoop.html;"},
        {false, true, true, true, true, HelpOutcome::kInBrowser, HelpOutcome::kInBrowser,
         "page KLMLoop.html;page KLMLoop.html;"},
        {true, true, true, false, false, HelpOutcome::kNoBrowser, HelpOutcome::kNoBrowser,
         "viewer KLMLoop;page KLMLoop.html;page KLMLoop.html;"},
        {true, false, false, false, true, HelpOutcome::kNoFiles, HelpOutcome::kNoFiles, "viewer KLMLoop;"},
        {false, false, true, true, true, HelpOutcome::kNoFiles, HelpOutcome::kNoFiles, ""},
    };
    int number = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(number);
        std::string program = MakeProgramFolder(std::to_string(number++), c.helpFile, c.page);
        known = {c.starts, c.shows, c.browser, ""};
        HelpSystem system = {CallViewer, ViewerAppears, OpenPage, false};
        EXPECT_EQ(OpenHelp(hMainWindow, program.c_str(), "KLMLoop", &system), c.first);
        EXPECT_EQ(OpenHelp(hMainWindow, program.c_str(), "KLMLoop", &system), c.second);
        EXPECT_EQ(known.asked, c.asked);
    }
}

// No help lies beside the test program.
TEST_F(HelpTest, MissingHelpIsToldAndLeavesTheDialogWorking) {
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
    const std::string message = answers.Texts()[0];
    EXPECT_NE(message.find("TELVAR.HLP"), std::string::npos) << message;
    EXPECT_EQ(answers.Texts()[2], message);
}

}  // namespace
