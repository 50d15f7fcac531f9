#include "editing/dialogs/wizard.h"

#include "app/main_window.h"
#include "app/shell_state.h"
#include "gif/block_list.h"
#include "platform/prompts.h"
#include "platform/wide_text.h"
#include "resources/command_ids.h"
#include "resources/string_ids.h"
#include "resources/wizard_ids.h"
#include "tests/gui/editor_test.h"
#include "tests/gui/window_driver.h"

namespace {

constexpr int kPages = 7;

class WizardTest : public ShellTest {
protected:
    // Runs the wizard, works it with `steps`, and answers what it asks by the way.
    std::vector<std::string> RunWizard(const Steps& steps, const std::vector<int>& buttons = {}) {
        DialogAnswers answers;
        answers.Do(steps);
        for (int button : buttons) answers.Press(button);
        Command(IDM_WIZARD);
        EXPECT_EQ(documentChanged, document.count > 0);
        documentChanged = false;  // or the next run would ask
        return answers.Texts();
    }
};

bool Visible(HWND dialog, int id) {
    return IsWindowVisible(GetDlgItem(dialog, id));
}

void Next(HWND dialog) {
    PressButton(dialog, IDC_WIZARD_NEXT);
}

// Goes on to the page of the control.
void GoTo(HWND dialog, int id) {
    for (int i = 1; i < kPages && !Visible(dialog, id); ++i) Next(dialog);
}

LRESULT ToList(HWND dialog, int list, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendDlgItemMessageW(dialog, list, message, wParam, lParam);
}

// Puts a file straight onto the list, as Select does.
void Put(HWND dialog, const std::string& path) {
    ToList(dialog, IDC_WIZARD_FILES, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(WideFromUtf8(path).c_str()));
}

// Clicks the radio button, puts the files on the list and goes on until Done.
Steps Build(int radio, const std::vector<std::string>& files) {
    return [=](HWND dialog) {
        GoTo(dialog, radio);
        ClickBox(dialog, radio);
        for (const std::string& file : files) Put(dialog, file);
        GoTo(dialog, IDC_WIZARD_CLOSING);
        Next(dialog);
    };
}

// The hundreds of the controls that are shown, as digits.
std::string ShownPages(HWND dialog) {
    std::string pages;
    for (int id = IDC_WIZARD_FIRST; id <= IDC_WIZARD_LAST; ++id) {
        char digit = static_cast<char>('0' + id / 100 - 1);
        if (Visible(dialog, id) && (pages.empty() || pages.back() != digit)) pages += digit;
    }
    return pages;
}

std::string ListLine(HWND dialog, int list, LRESULT line) {
    wchar_t text[300] = L"";
    ToList(dialog, list, LB_GETTEXT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(text));
    return Utf8FromWide(text);
}

// The names on the list, the selected one in brackets; then Next and Delete.
std::string Files(HWND dialog) {
    std::string files;
    for (LRESULT i = 0; i < ToList(dialog, IDC_WIZARD_FILES, LB_GETCOUNT); ++i) {
        std::string name = ListLine(dialog, IDC_WIZARD_FILES, i);
        name.erase(0, name.rfind('\\') + 1);
        files += ToList(dialog, IDC_WIZARD_FILES, LB_GETCURSEL) == i ? "[" + name + "]" : name;
    }
    return files + " " + Shown(dialog, {IDC_WIZARD_NEXT, IDC_WIZARD_DELETE});
}

void ExpectFocusUsable(HWND dialog) {
    HWND focus = GetFocus();
    EXPECT_TRUE(IsChild(dialog, focus) && IsWindowVisible(focus) && IsWindowEnabled(focus)) << GetDlgCtrlID(focus);
}

// It covers the dialog's colour, except around its rounded corners.
void ExpectPicture(HWND dialog) {
    UpdateWindow(dialog);
    HDC dc = GetDC(dialog);
    EXPECT_EQ(GetPixel(dc, 8, 8), GetSysColor(COLOR_BTNFACE));
    EXPECT_NE(GetPixel(dc, 8 + 48, 8 + 100), GetSysColor(COLOR_BTNFACE));
    ReleaseDC(dialog, dc);
}

}  // namespace

TEST_F(WizardTest, PagesGoForwardAndBack) {
    RunWizard([](HWND dialog) {
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_WIZARD_NEXT));
        EXPECT_EQ(Shown(dialog, {IDC_WIZARD_WEB, IDC_WIZARD_LOOP, IDC_WIZARD_SUPER_PALETTE}), "on|on|on");
        EXPECT_EQ(ToList(dialog, IDC_WIZARD_DELAYS, LB_GETCURSEL), 6);
        EXPECT_EQ(ListLine(dialog, IDC_WIZARD_DELAYS, 6), "100 hundredths");
        ExpectPicture(dialog);
        Put(dialog, "x");
        Put(dialog, "y");
        for (int page = 0; page < kPages; ++page) {
            SCOPED_TRACE(page);
            EXPECT_EQ(ShownPages(dialog), std::to_string(page));
            EXPECT_EQ(Shown(dialog, {IDC_WIZARD_BACK, IDC_WIZARD_NEXT}),
                      std::string(page > 0 ? "Back|" : "[Back]|") + (page < kPages - 1 ? "Next" : "Done"));
            ExpectFocusUsable(dialog);
            if (page < kPages - 1) Next(dialog);
        }
        SetFocus(GetDlgItem(dialog, IDC_WIZARD_BACK));
        for (int page = kPages - 1; page > 0; --page) {
            PressButton(dialog, IDC_WIZARD_BACK);
            EXPECT_EQ(ShownPages(dialog), std::to_string(page - 1));
        }
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_WIZARD_NEXT)) << "Back can't be used on the first page";
        PressButton(dialog, IDCANCEL);
    });
    EXPECT_EQ(document.count, 0u);
}

// The dialog hands several names over in an order of its own.
TEST_F(WizardTest, FilesComeSortedBehindTheEarlierOnes) {
    for (const char* name : {"m.gif", "B.gif", "a.gif", "C.gif"}) MakeGif(name);
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        GoTo(dialog, IDC_WIZARD_FILES);
        EXPECT_EQ(Files(dialog), " [Next]|[Delete]");
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_WIZARD_SELECT));
        PressButton(dialog, IDC_WIZARD_SELECT);
        EXPECT_EQ(Files(dialog), "[m.gif] [Next]|Delete");
        PressButton(dialog, IDC_WIZARD_SELECT);
        EXPECT_EQ(Files(dialog), "m.gifB.gifC.gif[a.gif] Next|Delete");
        EXPECT_EQ(ListLine(dialog, IDC_WIZARD_FILES, 1), File("B.gif"));
        PressButton(dialog, IDCANCEL);
    });
    answers.ChooseFile(File("m.gif"));
    answers.Press(IDCANCEL);
    answers.ChooseFiles(Folder(), {"a.gif", "C.gif", "B.gif"});
    answers.Press(IDCANCEL);
    Command(IDM_WIZARD);
}

TEST_F(WizardTest, DeleteSelectsTheNextFile) {
    RunWizard([](HWND dialog) {
        for (const char* name : {"a", "b", "c", "d", "e"}) Put(dialog, name);
        GoTo(dialog, IDC_WIZARD_FILES);
        SetFocus(GetDlgItem(dialog, IDC_WIZARD_DELETE));
        const std::pair<int, const char*> steps[] = {{-1, "abcde Next|Delete"}, {0, "[b]cde Next|Delete"},
                                                     {1, "b[d]e Next|Delete"},  {2, "b[d] Next|Delete"},
                                                     {0, "[d] [Next]|Delete"},  {0, " [Next]|[Delete]"}};
        for (const auto& [selected, files] : steps) {
            ToList(dialog, IDC_WIZARD_FILES, LB_SETCURSEL, static_cast<WPARAM>(selected));
            PressButton(dialog, IDC_WIZARD_DELETE);
            EXPECT_EQ(Files(dialog), files);
            ExpectFocusUsable(dialog);
        }
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_WIZARD_SELECT));
        PressButton(dialog, IDCANCEL);
    });
}

TEST_F(WizardTest, DonePutsAnUntitledDocumentIntoTheWindow) {
    const std::string first = MakeGif("a.gif", 20, 10), second = MakeGif("b.gif", 8, 30);
    const std::pair<int, const char*> matchings[] = {{IDC_WIZARD_SUPER_PALETTE, "2 colours"},
                                                     {IDC_WIZARD_FIRST_PALETTE, "256 colours"},
                                                     {IDC_WIZARD_PHOTOREALISTIC, "256 colours"},
                                                     {IDC_WIZARD_DRAWN, "256 colours"},
                                                     {IDC_WIZARD_SIXTEEN, "16 colours"}};
    for (const auto& [radio, colours] : matchings)
        for (int loop : {IDC_WIZARD_LOOP, IDC_WIZARD_ONCE}) {
            RunWizard([&, radio = radio](HWND dialog) {
                GoTo(dialog, loop);
                ClickBox(dialog, loop);
                ToList(dialog, IDC_WIZARD_DELAYS, LB_SETCURSEL, 15);
                Build(radio, {first, second})(dialog);
            });
            const std::string control = "CONTROL\xFE (delay 5000 1/100ths of a second)";
            std::vector<std::string> lines = {"HEADER\xFE GIF89a Screen (20 x 30)",
                                              "LOOP\xFE (0 iterations)",
                                              control,
                                              "IMAGE\xFE " + first + " 20 x 10, " + colours,
                                              control,
                                              "IMAGE\xFE " + second + " 8 x 30, " + colours};
            if (loop == IDC_WIZARD_ONCE) lines.erase(lines.begin() + 1);
            EXPECT_EQ(Lines(), lines);
        }
    EXPECT_NE(Title().find("untitled.gif"), std::string::npos);
    EXPECT_EQ(Selection(), 0);
    EXPECT_TRUE(IsEnabled(IDM_SAVE));
    EXPECT_STREQ(currentFileName, "");
    Block block;
    EXPECT_TRUE(GetBlock(document, &block, 4) && block.owner == &document);
}

TEST_F(WizardTest, CorruptedFilesAreAskedAboutAndAMissingFirstPaletteIsTold) {
    const std::string good = MakeGif("a.gif"), broken = File("broken.gif");
    WriteWholeFile(broken, "GIF");
    const std::tuple<int, std::vector<std::string>, int, unsigned, unsigned> rows[] = {
        {IDC_WIZARD_DRAWN, {good, broken}, IDYES, IDS_CORRUPTED_FILE, 5},
        {IDC_WIZARD_DRAWN, {good, broken}, IDNO, IDS_CORRUPTED_FILE, 0},
        {IDC_WIZARD_FIRST_PALETTE, {broken, good}, IDOK, IDS_OPEN_FAILED, 0}};
    for (const auto& [radio, files, answer, text, blocks] : rows) {
        const auto texts = RunWizard(Build(radio, files), {answer});
        EXPECT_EQ(texts[1], LoadStr(text));
        EXPECT_EQ(document.count, blocks);
        EXPECT_EQ(Title().find("NO FILE") == std::string::npos, blocks > 0);
    }
}
