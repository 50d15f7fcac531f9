// The list's lines as they are painted, and its place in the window.
#include "tests/gui/picture.h"
#include "tests/gui/window_driver.h"
#include "windows/ids/insert_ids.h"

namespace {

constexpr RECT kPlace = {5, 3, 265, 19};

class BlockListViewTest : public ShellTest {};

// Has the main window draw line `line` as the list box would, against the same by plain calls; nothing at all without
// a kind.
void ExpectLine(UINT line, UINT state, const std::wstring& kind, const std::wstring& details) {
    const bool selected = state & ODS_SELECTED;
    Canvas shown(280, 30, RGB(255, 0, 255)), expected(280, 30, RGB(255, 0, 255));
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    DRAWITEMSTRUCT item = {ODT_LISTBOX, IDC_BLOCK_LIST, line, ODA_FOCUS, state, list, shown.Dc(), kPlace, 0};
    SendMessageW(hMainWindow, WM_DRAWITEM, IDC_BLOCK_LIST, reinterpret_cast<LPARAM>(&item));
    if (!kind.empty()) FillRect(expected.Dc(), &kPlace, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetBkMode(expected.Dc(), TRANSPARENT);
    SetTextAlign(expected.Dc(), TA_UPDATECP);  // each text begins where the last one ended
    MoveToEx(expected.Dc(), kPlace.left, kPlace.top, nullptr);
    const COLORREF colours[] = {selected ? RGB(255, 255, 255) : RGB(0, 0, 0), GetSysColor(COLOR_BTNFACE)};
    for (const std::wstring* text : {&kind, &details}) {
        SetTextColor(expected.Dc(), colours[text == &details]);
        TextOutW(expected.Dc(), 0, 0, text->c_str(), static_cast<int>(text->size()));
    }
    EXPECT_EQ(Difference(expected.Look(), shown.Look()), "") << "line " << line << ", state " << state;
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
