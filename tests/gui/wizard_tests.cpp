// The Animation Wizard, page by page.
#include <filesystem>

#include "tests/gui/editor_test.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/wizard_files.h"
#include "windows/ids/wizard_ids.h"

namespace {

LRESULT ToList(HWND dialog, int list, UINT message, LRESULT wParam = 0, const wchar_t* text = nullptr) {
    return SendDlgItemMessageW(dialog, list, message, static_cast<WPARAM>(wParam), reinterpret_cast<LPARAM>(text));
}

std::string ListLine(HWND dialog, int list, LRESULT line) {
    wchar_t text[300] = L"";
    ToList(dialog, list, LB_GETTEXT, line, text);
    return Utf8FromWide(text);
}

class WizardTest : public EditorTest {
protected:
    // Runs the wizard: clicks the radio buttons, takes the longest delay, puts the files straight onto the list, as
    // Select does, and goes on until Done, while `boxes` are answered.
    void RunWizard(const Ids& radios, const std::vector<std::string>& files, const std::vector<Steps>& boxes) {
        auto walk = [&](HWND dialog) {
            ToList(dialog, IDC_WIZARD_DELAYS, LB_SETCURSEL, 15);
            for (const std::string& file : files)
                ToList(dialog, IDC_WIZARD_FILES, LB_ADDSTRING, 0, WideFromUtf8(file).c_str());
            for (int page = 0; page < 7; ++page) {
                for (int radio : radios)
                    if (IsWindowVisible(GetDlgItem(dialog, radio))) ClickBox(dialog, radio);
                PressButton(dialog, IDC_WIZARD_NEXT);
            }
        };
        Run(IDM_WIZARD, {walk}, boxes);
    }

    // The hundreds of the controls that are shown, as digits; Back, Next and Delete; the names on the list, the
    // selected one in brackets.
    static std::string Page(HWND dialog) {
        std::string state;
        for (int id = IDC_WIZARD_FIRST; id <= IDC_WIZARD_LAST; ++id) {
            char digit = static_cast<char>('0' + id / 100);
            if (IsWindowVisible(GetDlgItem(dialog, id)) && (state.empty() || state.back() != digit)) state += digit;
        }
        state += " " + Shown(dialog, {IDC_WIZARD_BACK, IDC_WIZARD_NEXT, IDC_WIZARD_DELETE});
        for (LRESULT i = 0; i < ToList(dialog, IDC_WIZARD_FILES, LB_GETCOUNT); ++i) {
            std::string path = ListLine(dialog, IDC_WIZARD_FILES, i), name = path.substr(path.rfind('\\') + 1);
            state += " " + (ToList(dialog, IDC_WIZARD_FILES, LB_GETCURSEL) == i ? "[" + name + "]" : name);
        }
        HWND focus = GetFocus();
        EXPECT_TRUE(IsChild(dialog, focus) && IsWindowVisible(focus) && IsWindowEnabled(focus)) << state;
        return state;
    }

    // What the tip says for the line under the mouse; "(none)" without a tip.
    static std::string TipOf(HWND list) {
        for (HWND tip = nullptr; (tip = FindWindowExW(nullptr, tip, TOOLTIPS_CLASSW, nullptr)) != nullptr;) {
            wchar_t text[300] = L"";
            TTTOOLINFOW tool = {};
            tool.cbSize = TTTOOLINFOW_V2_SIZE;
            tool.hwnd = list;
            tool.uId = 1;
            tool.lpszText = text;
            if (!SendMessageW(tip, TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&tool))) continue;
            return IsRectEmpty(&tool.rect) ? "" : Utf8FromWide(text);
        }
        return "(none)";
    }
};

}  // namespace

TEST_F(WizardTest, PagesGoForwardAndBackWhileFilesComeAndGo) {
    for (const char* name : {"m.gif", "B.gif", "a.gif", "C.gif"}) MakeGif(name);
    auto walk = [&](HWND dialog) {
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_WIZARD_NEXT));
        EXPECT_EQ(Shown(dialog, {IDC_WIZARD_WEB, IDC_WIZARD_LOOP, IDC_WIZARD_SUPER_PALETTE}), "on|on|on");
        EXPECT_EQ(ListLine(dialog, IDC_WIZARD_DELAYS, ToList(dialog, IDC_WIZARD_DELAYS, LB_GETCURSEL)),
                  "100 hundredths");

        // The picture covers the dialog's colour, except around its rounded corners.
        EXPECT_EQ(PixelAt(dialog, 8, 8), GetSysColor(COLOR_BTNFACE));
        EXPECT_NE(PixelAt(dialog, 8 + 48, 8 + 100), GetSysColor(COLOR_BTNFACE));

        EXPECT_EQ(Page(dialog), "1 [Back]|Next|[Delete]");
        for (const char* page : {"2", "3", "4", "5", "6"}) {
            PressButton(dialog, IDC_WIZARD_NEXT);
            EXPECT_EQ(Page(dialog), std::string(page) + " Back|" + (*page < '6' ? "Next" : "[Next]") + "|[Delete]");
        }
        EXPECT_EQ(GetFocus(), GetDlgItem(dialog, IDC_WIZARD_SELECT));
        PressButton(dialog, IDC_WIZARD_SELECT);
        EXPECT_EQ(Page(dialog), "6 Back|[Next]|Delete [m.gif]");
        PressButton(dialog, IDC_WIZARD_SELECT);
        EXPECT_EQ(Page(dialog), "6 Back|Next|Delete m.gif B.gif C.gif [a.gif]") << "sorted behind the earlier ones";
        EXPECT_EQ(ListLine(dialog, IDC_WIZARD_FILES, 1), File("B.gif"));
        PressButton(dialog, IDC_WIZARD_NEXT);
        EXPECT_EQ(Page(dialog), "7 Back|Done|Delete m.gif B.gif C.gif [a.gif]");
        PressButton(dialog, IDC_WIZARD_BACK);

        SetFocus(GetDlgItem(dialog, IDC_WIZARD_DELETE));
        for (const auto& [selected, state] : {std::pair(-1, "Next|Delete m.gif B.gif C.gif a.gif"),
                                              {0, "Next|Delete [B.gif] C.gif a.gif"},
                                              {1, "Next|Delete B.gif [a.gif]"},
                                              {1, "[Next]|Delete [B.gif]"},
                                              {0, "[Next]|[Delete]"}}) {
            ToList(dialog, IDC_WIZARD_FILES, LB_SETCURSEL, selected);
            PressButton(dialog, IDC_WIZARD_DELETE);
            EXPECT_EQ(Page(dialog), std::string("6 Back|") + state);
        }
        for (int page = 6; page > 1; --page) PressButton(dialog, IDC_WIZARD_BACK);
        EXPECT_EQ(Page(dialog), "1 [Back]|Next|[Delete]");
        PressButton(dialog, IDCANCEL);
    };
    // The dialog hands several names over in an order of its own.
    const Steps three = DialogAnswers::ChooseFiles({Folder(), R"("a.gif" "C.gif" "B.gif")"});
    Run(IDM_WIZARD, {walk, DialogAnswers::ChooseFiles({File("m.gif")}), Press(IDCANCEL), three, Press(IDCANCEL)});
    EXPECT_EQ(document.count, 0u);
}

// And the files are those of the paths, whatever the lines show.
TEST_F(WizardTest, InCarefulModeLinesWithoutRoomShowNamesAndTips) {
    const std::string folder = File(std::string(60, 'f'));
    std::filesystem::create_directory(folder);
    const std::string a = MakeGif(std::string(60, 'f') + "\\a.gif"), b = MakeGif(std::string(60, 'f') + "\\b.gif");
    auto walk = [&](HWND dialog) {
        HWND list = GetDlgItem(dialog, IDC_WIZARD_FILES);
        for (int page = 0; page < 5; ++page) PressButton(dialog, IDC_WIZARD_NEXT);
        PressButton(dialog, IDC_WIZARD_SELECT);
        const bool careful = settings.carefulMode != 0;
        EXPECT_EQ(ListLine(dialog, IDC_WIZARD_FILES, 0), careful ? "a.gif" : a);
        EXPECT_EQ(ListLine(dialog, IDC_WIZARD_FILES, 1), careful ? "b.gif" : b);
        const LRESULT reach = ToList(dialog, IDC_WIZARD_FILES, LB_GETHORIZONTALEXTENT);
        RECT client = {}, second = {};
        GetClientRect(list, &client);
        EXPECT_EQ(reach > client.right, !careful);
        SendMessageW(list, LB_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&second));
        SendMessageW(list, WM_MOUSEMOVE, 0, MAKELPARAM(5, second.top + 2));
        EXPECT_EQ(TipOf(list), careful ? b : "(none)");
        SendMessageW(list, WM_MOUSEMOVE, 0, MAKELPARAM(5, client.bottom - 2));
        EXPECT_EQ(TipOf(list), careful ? "" : "(none)") << "below the lines";
        ToList(dialog, IDC_WIZARD_FILES, LB_SETCURSEL, 0);
        PressButton(dialog, IDC_WIZARD_DELETE);
        PressButton(dialog, IDC_WIZARD_SELECT);
        EXPECT_EQ(WizardFiles(dialog), (std::vector<std::string>{b, a}));
        ToList(dialog, IDC_WIZARD_FILES, LB_ADDSTRING, 0, L"C:\\c.gif");
        EXPECT_EQ(WizardFiles(dialog).back(), "C:\\c.gif");
        PressButton(dialog, IDCANCEL);
    };
    const Steps both = DialogAnswers::ChooseFiles({folder, R"("a.gif" "b.gif")"});
    for (uint32_t careful : {0u, 1u}) {
        settings.carefulMode = careful;
        Run(IDM_WIZARD, {walk, both, Press(IDCANCEL), DialogAnswers::ChooseFiles({a}), Press(IDCANCEL)});
    }
}

TEST_F(WizardTest, TheFocusLeavesAPageForTheButtonThatEnterPresses) {
    Run(IDM_WIZARD, {[](HWND dialog) {
            PressButton(dialog, IDC_WIZARD_NEXT);
            for (int control : {IDC_WIZARD_WEB, IDC_WIZARD_ONCE, IDC_WIZARD_DRAWN, IDC_WIZARD_DELAYS}) {
                SetFocus(GetDlgItem(dialog, control));
                PressButton(dialog, IDC_WIZARD_NEXT);
                const int meant = control == IDC_WIZARD_DELAYS ? IDC_WIZARD_SELECT : IDC_WIZARD_NEXT;
                EXPECT_EQ(GetDlgCtrlID(GetFocus()), meant);
                EXPECT_TRUE(SendDlgItemMessageW(dialog, meant, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) << meant;
            }
            PressButton(dialog, IDCANCEL);
        }});
}

TEST_F(WizardTest, DonePutsAnUntitledDocumentIntoTheWindow) {
    const std::string first = MakeGif("a.gif", 20, 10), second = MakeGif("b.gif", 8, 30);
    for (const auto& [matching, colours] : {std::pair(IDC_WIZARD_SUPER_PALETTE, "2"),
                                            {IDC_WIZARD_FIRST_PALETTE, "256"},
                                            {IDC_WIZARD_PHOTOREALISTIC, "256"},
                                            {IDC_WIZARD_DRAWN, "256"},
                                            {IDC_WIZARD_SIXTEEN, "16"}}) {
        const bool loops = matching != IDC_WIZARD_DRAWN;
        RunWizard({matching, loops ? IDC_WIZARD_LOOP : IDC_WIZARD_ONCE}, {first, second}, {});
        EXPECT_EQ(State(), std::string(loops ? "[HEADER] LOOP " : "[HEADER] ") + "CONTROL IMAGE CONTROL IMAGE changed");
        documentChanged = false;  // or the next run would ask
        const int last = static_cast<int>(document.count) - 1;
        EXPECT_EQ(LineOf(last - 1), "CONTROL\xFE (delay 5000 1/100ths of a second)");
        EXPECT_EQ(LineOf(last), "IMAGE\xFE " + second + " 8 x 30, " + colours + " colours");
    }
    EXPECT_EQ(LineOf(0), "HEADER\xFE GIF89a Screen (20 x 30)");
    EXPECT_NE(Title().find("untitled.gif"), std::string::npos);
    EXPECT_TRUE(IsEnabled(IDM_SAVE));
    EXPECT_EQ(At(4).owner, &document);

    const std::string broken = File("broken.gif");
    WriteAll(broken, "GIF");
    const std::string corrupted = LoadStr(IDS_CORRUPTED_FILE);
    RunWizard({IDC_WIZARD_DRAWN}, {first, broken}, {Read(corrupted, IDNO)});
    EXPECT_EQ(document.count, 0u);
    EXPECT_NE(Title().find("NO FILE"), std::string::npos);
    settings.carefulMode = 1;
    RunWizard({IDC_WIZARD_DRAWN}, {first, broken}, {Read("broken.gif: " + corrupted, IDNO)});
    RunWizard({IDC_WIZARD_FIRST_PALETTE}, {broken, first}, {Read(LoadStr(IDS_OPEN_FAILED), IDOK)});
}

TEST_F(WizardTest, PicturesOfEveryKindBecomeFrames) {
    const std::string pictures = TEST_PICTURES;
    const std::vector<std::string> files = {MakeGif("a.gif", 20, 10), pictures + "/colours-opacity-8.png",
                                            pictures + "/colours.jpg", pictures + "/colours-24.bmp"};
    for (int matching : {IDC_WIZARD_SUPER_PALETTE, IDC_WIZARD_FIRST_PALETTE, IDC_WIZARD_PHOTOREALISTIC,
                         IDC_WIZARD_DRAWN, IDC_WIZARD_SIXTEEN}) {
        SCOPED_TRACE(matching);
        RunWizard({matching, IDC_WIZARD_ONCE}, files, {});
        ASSERT_EQ(State(), "[HEADER] CONTROL IMAGE CONTROL IMAGE CONTROL IMAGE CONTROL IMAGE changed");
        documentChanged = false;
        for (int i = 0; i < 4; ++i) {
            const ControlFields control = GetControlFields(At(2 * i + 1));
            EXPECT_EQ(control.packed & kControlTransparent, i == 1 ? 1 : 0) << i;
            EXPECT_EQ(control.packed & kControlDisposal, 2 << kControlDisposalShift) << i;
        }
        TempFolder saved;
        EXPECT_TRUE(WriteGifFile(document, saved.Path("a.gif").c_str())) << "every frame has colours by number";
    }
}
