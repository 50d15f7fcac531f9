// The list's lines as they are painted, and its place in the window.
#include "tests/gui/picture.h"
#include "tests/gui/window_driver.h"
#include "windows/app/line_colours.h"
#include "windows/ids/insert_ids.h"
#include "windows/ids/panel_ids.h"

namespace {

constexpr RECT kPlace = {5, 3, 265, 19};

class BlockListViewTest : public ShellTest {};

// Has the main window draw line `line` as the list box would, against the same by plain calls; nothing at all without
// a kind.
struct Colours {
    HBRUSH back;
    COLORREF kind, details;
};

Colours Classic(bool selected) {
    return {GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW), selected ? RGB(255, 255, 255) : RGB(0, 0, 0),
            GetSysColor(COLOR_BTNFACE)};
}

void ExpectLine(UINT line, UINT state, const std::wstring& kind, const std::wstring& details, const Colours& is) {
    Canvas shown(280, 30, RGB(255, 0, 255)), expected(280, 30, RGB(255, 0, 255));
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    DRAWITEMSTRUCT item = {ODT_LISTBOX, IDC_BLOCK_LIST, line, ODA_FOCUS, state, list, shown.Dc(), kPlace, 0};
    SendMessageW(hMainWindow, WM_DRAWITEM, IDC_BLOCK_LIST, reinterpret_cast<LPARAM>(&item));
    if (!kind.empty()) FillRect(expected.Dc(), &kPlace, is.back);
    SetBkMode(expected.Dc(), TRANSPARENT);
    SetTextAlign(expected.Dc(), TA_UPDATECP);  // each text begins where the last one ended
    MoveToEx(expected.Dc(), kPlace.left, kPlace.top, nullptr);
    for (const std::wstring* text : {&kind, &details}) {
        SetTextColor(expected.Dc(), text == &details ? is.details : is.kind);
        TextOutW(expected.Dc(), 0, 0, text->c_str(), static_cast<int>(text->size()));
    }
    EXPECT_EQ(Difference(expected.Look(), shown.Look()), "") << "line " << line << ", state " << state;
}

void ExpectLine(UINT line, UINT state, const std::wstring& kind, const std::wstring& details) {
    ExpectLine(line, state, kind, details, Classic((state & ODS_SELECTED) != 0));
}

// The system's colours, as long as there is one of these.
class Scheme {
public:
    using Changes = std::vector<std::pair<int, COLORREF>>;
    explicit Scheme(const Changes& changes) {
        for (const auto& change : changes) before_.emplace_back(change.first, GetSysColor(change.first));
        Set(changes);
    }
    ~Scheme() { Set(before_); }
    Scheme(const Scheme&) = delete;
    Scheme& operator=(const Scheme&) = delete;

private:
    static void Set(const Changes& changes) {
        for (const auto& [index, colour] : changes) SetSysColors(1, &index, &colour);
        PumpMessages();
    }

    Changes before_;
};

TEST_F(BlockListViewTest, ReadableDetailsTakeTheColoursThatTheSystemHasForText) {
    constexpr COLORREF kBlack = RGB(0, 0, 0), kWhite = RGB(255, 255, 255), kNight = RGB(32, 32, 32);
    struct {
        const char* name;
        COLORREF window, text, grey, highlight, highlightText, details;
    } const cases[] = {
        {"classic", kWhite, kBlack, RGB(128, 128, 128), RGB(0, 0, 128), kWhite, RGB(128, 128, 128)},
        {"newer", kWhite, kBlack, RGB(109, 109, 109), RGB(0, 120, 215), kWhite, RGB(109, 109, 109)},
        {"pale grey", kWhite, kBlack, RGB(160, 160, 160), RGB(0, 120, 215), kWhite, RGB(160, 160, 160)},
        {"dark", kNight, RGB(240, 240, 240), RGB(150, 150, 150), RGB(80, 80, 160), kWhite, RGB(150, 150, 150)},
        {"high contrast", kBlack, RGB(255, 255, 0), RGB(0, 255, 0), RGB(0, 128, 0), kBlack, RGB(0, 255, 0)},
        {"grey as the window", kBlack, kWhite, RGB(20, 20, 20), kWhite, kBlack, kWhite},
    };
    Command(IDM_NEW);
    Append(&document, MakeText(kCommentBlock, "Hello"));
    FillBlockListView(hMainWindow, &document);
    for (const auto& is : cases) {
        SCOPED_TRACE(is.name);
        const Scheme scheme({{COLOR_WINDOW, is.window},
                             {COLOR_WINDOWTEXT, is.text},
                             {COLOR_GRAYTEXT, is.grey},
                             {COLOR_HIGHLIGHT, is.highlight},
                             {COLOR_HIGHLIGHTTEXT, is.highlightText}});
        settings.readableDetails = 1;
        ExpectLine(1, 0, L"COMMENT", L" Hello", {GetSysColorBrush(COLOR_WINDOW), is.text, is.details});
        ExpectLine(1, ODS_SELECTED, L"COMMENT", L" Hello",
                   {GetSysColorBrush(COLOR_HIGHLIGHT), is.highlightText, is.highlightText});
        settings.readableDetails = 0;
        const HBRUSH back = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
        ExpectLine(1, 0, L"COMMENT", L" Hello", {back, kBlack, GetSysColor(COLOR_BTNFACE)});
    }
}

TEST_F(BlockListViewTest, ThePanelSaysWhenTheDetailsAreFaint) {
    const std::pair<COLORREF, bool> cases[] = {
        {RGB(192, 192, 192), false}, {RGB(212, 208, 200), false}, {RGB(240, 240, 240), true}, {RGB(0, 0, 0), false}};
    for (const auto& [face, isFaint] : cases) {
        const Scheme scheme({{COLOR_BTNFACE, face}});
        DialogAnswers answers;
        std::string note;
        answers.Do([&note](HWND panel) {
            note = ControlText(panel, IDC_PANEL_FAINT_NOTE);
            PressButton(panel, IDOK);
        });
        Command(IDM_INFORMATION);
        EXPECT_EQ(note.find("Readable details") != std::string::npos, isFaint) << std::hex << face;
    }
}

TEST(LineColours, ContrastIsThatOfTheGuidelines) {
    EXPECT_DOUBLE_EQ(ContrastOf(RGB(0, 0, 0), RGB(255, 255, 255)), 21);
    EXPECT_DOUBLE_EQ(ContrastOf(RGB(9, 9, 9), RGB(9, 9, 9)), 1);
    EXPECT_NEAR(ContrastOf(RGB(255, 255, 255), RGB(119, 119, 119)), 4.48, 0.005);
    EXPECT_NEAR(ContrastOf(RGB(255, 0, 0), RGB(255, 255, 255)), 4.00, 0.005);
}

// kQuirkDetailsColour
TEST_F(BlockListViewTest, PaintsTheKindAndFaintDetailsBehindIt) {
    const std::string text = "\xFE caf\xE9 \x80 %s\r\nWorld";
    Command(IDM_NEW);
    Append(&document, MakeText(kCommentBlock, text));
    Append(&document, OfKind(kUnknownBlock));
    FillBlockListView(hMainWindow, &document);
    EXPECT_EQ(Lines()[1], "COMMENT\xFE \xFE caf\xE9 \x80 %s");
    for (UINT state : {UINT{ODS_FOCUS}, UINT{ODS_SELECTED}}) {
        ExpectLine(1, state, L"COMMENT", L" \xFE caf\xE9 \x20AC %s");
        ExpectLine(2, state, L"UNKNOWN TYPE", L"");
        ExpectLine(7, state, L"", L"");  // not there
    }
    EXPECT_EQ(SendMessageW(hMainWindow, WM_DRAWITEM, 5, 0), 0) << "another control";
}

TEST_F(BlockListViewTest, ShowsOnTheScreenWhatItHolds) {
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    Open(MakeGif("a.gif"));
    for (BlockList* shown : {&document, static_cast<BlockList*>(nullptr)}) {
        FillBlockListView(hMainWindow, shown);
        SelectLine(hMainWindow, 0);
        UpdateWindow(list);
        const COLORREF colour = GetSysColor(shown ? COLOR_HIGHLIGHT : COLOR_WINDOW);
        EXPECT_TRUE(GetPixel(WindowDc(list).Get(), 300, 5) == colour && GetFocus() == list);
    }
}

TEST_F(BlockListViewTest, StaysWhereItIsScrolledTo) {
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    auto top = [=] { return SendMessageW(list, LB_GETTOPINDEX, 0, 0); };
    auto scrollTo = [=](int line) { SendMessageW(list, LB_SETTOPINDEX, static_cast<WPARAM>(line), 0); };
    Command(IDM_NEW);
    for (int i = 0; i < 100; ++i) Append(&document, MakeControlBlock(&document));
    FillBlockListView(hMainWindow, &document);
    RECT client = {};
    GetClientRect(list, &client);
    const int seen = static_cast<int>(client.bottom / SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
    Select(55);
    scrollTo(50);
    Command(IDM_DELETE);
    EXPECT_EQ(top(), 50);
    auto insertComment = [&] {
        DialogAnswers answers;
        answers.Press(IDC_INSERT_COMMENT);
        Command(IDM_INSERT);
    };
    insertComment();
    EXPECT_EQ(top(), 50);
    Select(50 + seen - 1);
    insertComment();
    EXPECT_EQ(top(), 51) << "the new line is seen too";
    scrollTo(20);
    ReplaceHeaderLine(hMainWindow, document.blocks[0]);
    EXPECT_EQ(top(), 20) << "although the selected line is not seen";
    Select(100);
    Command(IDM_DELETE);
    EXPECT_EQ(top(), 101 - seen) << "there is nothing behind the last line";
    documentChanged = false;
    Command(IDM_NEW);
    EXPECT_EQ(top(), 0);
}

// kQuirkMinimumSizeRestored
TEST_F(BlockListViewTest, FollowsTheWindowSizeDownToTheMinimum) {
    constexpr SIZE kSizes[][2] = {{{700, 500}, {700, 500}}, {{399, 600}, {400, 440}}, {{600, 439}, {400, 440}}};
    for (const auto& [asked, kept] : kSizes) {
        SetWindowPos(hMainWindow, nullptr, 60, 50, asked.cx, asked.cy, SWP_NOZORDER);
        RECT outer = {}, client = {}, list = {};
        GetWindowRect(hMainWindow, &outer);
        EXPECT_TRUE(outer.left == 60 && outer.right == 60 + kept.cx && outer.bottom == 50 + kept.cy) << asked.cx;
        GetClientRect(hMainWindow, &client);
        GetWindowRect(GetDlgItem(hMainWindow, IDC_BLOCK_LIST), &list);
        MapWindowPoints(nullptr, hMainWindow, reinterpret_cast<POINT*>(&list), 2);
        EXPECT_TRUE(list.left == 8 && list.top == 8 && list.right == client.right - 8);
        const long below = client.bottom - list.bottom;
        EXPECT_TRUE(below >= 8 && below < 40) << "a list box may round its height down to whole lines";
    }
    SetWindowPos(hMainWindow, nullptr, 0, 0, 640, 500, SWP_NOMOVE | SWP_NOZORDER);
    Sleep(200);  // for the second jump, which a window made larger meanwhile must not make
    PumpMessages();
    RECT outer = {};
    GetWindowRect(hMainWindow, &outer);
    EXPECT_EQ(outer.right - outer.left, 640);
}

}  // namespace
