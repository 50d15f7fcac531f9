#include "editing/dialogs/wizard.h"

#include "app/main_window.h"
#include "app/shell_state.h"
#include "gif/descriptor.h"
#include "platform/prompts.h"
#include "platform/wide_text.h"
#include "resources/command_ids.h"
#include "resources/string_ids.h"
#include "resources/wizard_ids.h"
#include "tests/gui/window_driver.h"

namespace {

constexpr int kPages = 7;

class WizardTest : public ShellTest {
protected:
    void RunWizard() { Command(IDM_WIZARD); }
};

HWND Item(HWND dialog, int id) {
    return GetDlgItem(dialog, id);
}

bool Shown(HWND dialog, int id) {
    return IsWindowVisible(Item(dialog, id)) != FALSE;
}

bool Usable(HWND dialog, int id) {
    return IsWindowEnabled(Item(dialog, id)) != FALSE;
}

void Next(HWND dialog) {
    PressButton(dialog, IDC_WIZARD_NEXT);
}

void GoToPage(HWND dialog, int page) {
    for (int i = 0; i < page; ++i) Next(dialog);
}

// Goes on to the page of the radio button and clicks it.
void Choose(HWND dialog, int radio) {
    for (int i = 0; i < kPages && !Shown(dialog, radio); ++i) Next(dialog);
    ClickBox(dialog, radio);
}

// Goes through the pages that are left and presses Done.
void Finish(HWND dialog) {
    while (ControlText(dialog, IDC_WIZARD_NEXT) == "Next" && Usable(dialog, IDC_WIZARD_NEXT)) Next(dialog);
    Next(dialog);
}

// The hundreds of the controls that are shown, as digits.
std::string ShownPages(HWND dialog) {
    std::string pages;
    for (int id = IDC_WIZARD_FIRST; id <= IDC_WIZARD_LAST; ++id) {
        char digit = static_cast<char>('0' + id / 100 - 1);
        if (Item(dialog, id) && Shown(dialog, id) && (pages.empty() || pages.back() != digit)) pages += digit;
    }
    return pages;
}

LRESULT ToList(HWND dialog, int list, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendDlgItemMessageW(dialog, list, message, wParam, lParam);
}

std::string ListLine(HWND dialog, int list, LRESULT line) {
    wchar_t text[300] = L"";
    ToList(dialog, list, LB_GETTEXT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(text));
    return Utf8FromWide(text);
}

// The names of the files on the list without their folder, the selected one in brackets.
std::string Files(HWND dialog) {
    std::string files;
    for (LRESULT i = 0; i < ToList(dialog, IDC_WIZARD_FILES, LB_GETCOUNT); ++i) {
        std::string path = ListLine(dialog, IDC_WIZARD_FILES, i);
        std::string name = path.substr(path.rfind('\\') + 1);
        files += ToList(dialog, IDC_WIZARD_FILES, LB_GETCURSEL) == i ? "[" + name + "]" : name;
    }
    return files;
}

void ExpectFocusUsable(HWND dialog) {
    HWND focus = GetFocus();
    EXPECT_TRUE(IsChild(dialog, focus) && IsWindowVisible(focus) && IsWindowEnabled(focus)) << GetDlgCtrlID(focus);
}

// Puts a file straight onto the list, as Select does.
void Put(HWND dialog, const std::string& path) {
    ToList(dialog, IDC_WIZARD_FILES, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(WideFromUtf8(path).c_str()));
}

}  // namespace

TEST_F(WizardTest, PagesGoForwardAndBack) {
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        EXPECT_EQ(GetFocus(), Item(dialog, IDC_WIZARD_NEXT));
        Put(dialog, "x");
        Put(dialog, "y");
        for (int page = 0; page < kPages; ++page) {
            EXPECT_EQ(ShownPages(dialog), std::to_string(page));
            EXPECT_EQ(Usable(dialog, IDC_WIZARD_BACK), page > 0);
            EXPECT_TRUE(Usable(dialog, IDC_WIZARD_NEXT));
            EXPECT_EQ(ControlText(dialog, IDC_WIZARD_NEXT), page < kPages - 1 ? "Next" : "Done");
            ExpectFocusUsable(dialog);
            if (page < kPages - 1) Next(dialog);
        }
        SetFocus(Item(dialog, IDC_WIZARD_BACK));
        for (int page = kPages - 1; page > 0; --page) {
            PressButton(dialog, IDC_WIZARD_BACK);
            EXPECT_EQ(ShownPages(dialog), std::to_string(page - 1));
            ExpectFocusUsable(dialog);
        }
        EXPECT_EQ(GetFocus(), Item(dialog, IDC_WIZARD_NEXT)) << "Back can't be used on the first page";
        PressButton(dialog, IDCANCEL);
    });
    RunWizard();
    EXPECT_EQ(document.count, 0u);
}

TEST_F(WizardTest, StartsWithItsUsualChoices) {
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        const int checked[] = {IDC_WIZARD_WEB, IDC_WIZARD_LOOP, IDC_WIZARD_SUPER_PALETTE};
        for (int id : checked) EXPECT_EQ(IsDlgButtonChecked(dialog, id), BST_CHECKED + 0u) << id;
        EXPECT_EQ(ToList(dialog, IDC_WIZARD_DELAYS, LB_GETCOUNT), 16);
        EXPECT_EQ(ToList(dialog, IDC_WIZARD_DELAYS, LB_GETCURSEL), 6);
        EXPECT_EQ(ListLine(dialog, IDC_WIZARD_DELAYS, 0), "1 hundredths");
        EXPECT_EQ(ListLine(dialog, IDC_WIZARD_DELAYS, 6), "100 hundredths");
        EXPECT_EQ(ListLine(dialog, IDC_WIZARD_DELAYS, 15), "5000 hundredths");
        PressButton(dialog, IDCANCEL);
    });
    RunWizard();
}

TEST_F(WizardTest, NextWaitsForTwoFiles) {
    MakeGif("a.gif");
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        GoToPage(dialog, 5);
        EXPECT_FALSE(Usable(dialog, IDC_WIZARD_NEXT));
        EXPECT_FALSE(Usable(dialog, IDC_WIZARD_DELETE));
        EXPECT_EQ(GetFocus(), Item(dialog, IDC_WIZARD_SELECT));
        PressButton(dialog, IDC_WIZARD_SELECT);
        EXPECT_EQ(Files(dialog), "[a.gif]");
        EXPECT_TRUE(Usable(dialog, IDC_WIZARD_DELETE));
        EXPECT_FALSE(Usable(dialog, IDC_WIZARD_NEXT));
        PressButton(dialog, IDC_WIZARD_SELECT);
        EXPECT_EQ(Files(dialog), "a.gif[a.gif]");
        EXPECT_TRUE(Usable(dialog, IDC_WIZARD_NEXT));
        PressButton(dialog, IDCANCEL);
    });
    for (int i = 0; i < 2; ++i) {
        answers.ChooseFile(File("a.gif"));
        answers.Press(IDCANCEL);
    }
    RunWizard();
}

// The dialog hands several names over in an order of its own.
TEST_F(WizardTest, SeveralFilesComeSortedBehindTheEarlierOnes) {
    for (const char* name : {"m.gif", "B.gif", "a.gif", "C.gif"}) MakeGif(name);
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        GoToPage(dialog, 5);
        PressButton(dialog, IDC_WIZARD_SELECT);
        EXPECT_EQ(Files(dialog), "m.gifB.gifC.gif[a.gif]");
        EXPECT_EQ(ListLine(dialog, IDC_WIZARD_FILES, 1), File("B.gif"));
        PressButton(dialog, IDCANCEL);
    });
    answers.ChooseFile(File("m.gif"));
    answers.Do([&](HWND dialog) {
        SetDlgItemTextW(dialog, FileNameField(dialog), L"\"a.gif\" \"C.gif\" \"B.gif\"");
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    });
    answers.Press(IDCANCEL);
    RunWizard();
}

TEST_F(WizardTest, DeleteSelectsTheNextFile) {
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        for (const char* name : {"a", "b", "c", "d", "e"}) Put(dialog, name);
        GoToPage(dialog, 5);
        PressButton(dialog, IDC_WIZARD_DELETE);
        EXPECT_EQ(Files(dialog), "abcde") << "nothing is selected";
        struct {
            WPARAM selected;
            const char* files;
            bool next;
        } steps[] = {{0, "[b]cde", true}, {1, "b[d]e", true}, {2, "b[d]", true}, {0, "[d]", false}, {0, "", false}};
        SetFocus(Item(dialog, IDC_WIZARD_DELETE));
        for (const auto& step : steps) {
            ToList(dialog, IDC_WIZARD_FILES, LB_SETCURSEL, step.selected);
            PressButton(dialog, IDC_WIZARD_DELETE);
            EXPECT_EQ(Files(dialog), step.files);
            EXPECT_EQ(Usable(dialog, IDC_WIZARD_NEXT), step.next);
            ExpectFocusUsable(dialog);
        }
        EXPECT_FALSE(Usable(dialog, IDC_WIZARD_DELETE));
        EXPECT_EQ(GetFocus(), Item(dialog, IDC_WIZARD_SELECT));
        PressButton(dialog, IDCANCEL);
    });
    RunWizard();
}

TEST_F(WizardTest, DonePutsAnUntitledDocumentIntoTheWindow) {
    std::string first = MakeGif("a.gif", 20, 10), second = MakeGif("b.gif", 8, 30);
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        Choose(dialog, IDC_WIZARD_ONCE);
        Choose(dialog, IDC_WIZARD_SIXTEEN);
        ToList(dialog, IDC_WIZARD_DELAYS, LB_SETCURSEL, 15);
        Put(dialog, first);
        Put(dialog, second);
        Finish(dialog);
    });
    RunWizard();
    EXPECT_EQ(Lines(),
              (std::vector<std::string>{
                  "HEADER\xFE GIF89a Screen (20 x 30)", "CONTROL\xFE (delay 5000 1/100ths of a second)",
                  "IMAGE\xFE " + first + " 20 x 10, 16 colours", "CONTROL\xFE (delay 5000 1/100ths of a second)",
                  "IMAGE\xFE " + second + " 8 x 30, 16 colours"}));
    EXPECT_NE(Title().find("untitled.gif"), std::string::npos);
    EXPECT_EQ(Selection(), 0);
    EXPECT_TRUE(documentChanged);
    EXPECT_TRUE(IsEnabled(IDM_SAVE));
    EXPECT_STREQ(currentFileName, "");
    Block block;
    ASSERT_TRUE(GetBlock(document, &block, 4));
    EXPECT_EQ(block.owner, &document);
    documentChanged = false;
}

TEST_F(WizardTest, EveryMatchingBuilds) {
    struct {
        int radio;
        const char* colours;
    } cases[] = {{IDC_WIZARD_SUPER_PALETTE, "2 colours"},
                 {IDC_WIZARD_FIRST_PALETTE, "256 colours"},
                 {IDC_WIZARD_PHOTOREALISTIC, "256 colours"},
                 {IDC_WIZARD_DRAWN, "256 colours"},
                 {IDC_WIZARD_SIXTEEN, "16 colours"}};
    std::string path = MakeGif("a.gif");
    for (const auto& c : cases) {
        DialogAnswers answers;
        answers.Do([&](HWND dialog) {
            Choose(dialog, c.radio);
            Put(dialog, path);
            Put(dialog, path);
            Finish(dialog);
        });
        RunWizard();
        ASSERT_EQ(Lines().size(), 6u);
        EXPECT_EQ(Lines()[1], "LOOP\xFE (0 iterations)");
        EXPECT_NE(Lines()[3].find(c.colours), std::string::npos) << Lines()[3];
        documentChanged = false;
    }
}

TEST_F(WizardTest, CorruptedFileIsAskedAbout) {
    WriteWholeFile(File("broken.gif"), "GIF");
    std::string good = MakeGif("a.gif");
    for (int answer : {IDYES, IDNO}) {
        DialogAnswers answers;
        answers.Do([&](HWND dialog) {
            Put(dialog, good);
            Put(dialog, File("broken.gif"));
            Finish(dialog);
        });
        answers.Press(answer);
        RunWizard();
        EXPECT_EQ(answers.Texts()[1], LoadStr(IDS_CORRUPTED_FILE));
        EXPECT_EQ(document.count, answer == IDYES ? 5u : 0u);
        EXPECT_EQ(documentChanged, answer == IDYES);
        documentChanged = false;
    }
    EXPECT_EQ(document.blocks, nullptr);
    EXPECT_NE(Title().find("NO FILE"), std::string::npos);
}

TEST_F(WizardTest, UnreadableFirstPaletteIsTold) {
    std::string good = MakeGif("a.gif");
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        Choose(dialog, IDC_WIZARD_FIRST_PALETTE);
        Put(dialog, File("missing.gif"));
        Put(dialog, good);
        Finish(dialog);
    });
    answers.Press(IDOK);
    RunWizard();
    EXPECT_EQ(answers.Texts()[1], LoadStr(IDS_OPEN_FAILED));
    EXPECT_EQ(document.count, 0u);
}

TEST_F(WizardTest, MnemonicsDoNotCollideOnAnyPage) {
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        Put(dialog, "x");
        Put(dialog, "y");
        for (int page = 0; page < kPages; ++page) {
            std::string letters;
            for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
                std::string text = ControlText(dialog, GetDlgCtrlID(child));
                size_t mark = text.find('&');
                if (!IsWindowVisible(child) || mark == std::string::npos) continue;
                auto letter = static_cast<char>(toupper(text[mark + 1]));
                EXPECT_EQ(letters.find(letter), std::string::npos) << letter << " on page " << page;
                letters += letter;
            }
            if (page < kPages - 1) Next(dialog);
        }
        PressButton(dialog, IDCANCEL);
    });
    RunWizard();
}

// The picture covers the dialog's colour, except around its rounded corners.
TEST_F(WizardTest, PictureIsTransparentAroundItsCorners) {
    DialogAnswers answers;
    answers.Do([&](HWND dialog) {
        UpdateWindow(dialog);
        HDC dc = GetDC(dialog);
        EXPECT_EQ(GetPixel(dc, 8, 8), GetSysColor(COLOR_BTNFACE));
        EXPECT_EQ(GetPixel(dc, 8 + 95, 8 + 231), GetSysColor(COLOR_BTNFACE));
        EXPECT_NE(GetPixel(dc, 8 + 48, 8 + 100), GetSysColor(COLOR_BTNFACE));
        ReleaseDC(dialog, dc);
        PressButton(dialog, IDCANCEL);
    });
    RunWizard();
}
