// The list's lines as they are painted, and its place in the window.
#include "app/block_list_view.h"

#include <array>

#include "app/services/shell_objects.h"
#include "app/shell_state.h"
#include "resources/command_ids.h"
#include "tests/gui/picture.h"
#include "tests/gui/window_driver.h"

namespace {

constexpr RECT kPlace = {5, 3, 265, 19};

class BlockListViewTest : public ShellTest {};

// Has the main window draw list line `line` as the list box would, against the same by plain calls; nothing at all
// without a kind.
void ExpectLine(UINT line, int state, const std::wstring& kind, const std::wstring& details) {
    const bool selected = state & ODS_SELECTED;
    Canvas shown(280, 30, RGB(255, 0, 255)), expected(280, 30, RGB(255, 0, 255));
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    DRAWITEMSTRUCT item = {ODT_LISTBOX, IDC_BLOCK_LIST, line,   ODA_FOCUS, static_cast<UINT>(state),
                           list,        shown.Dc(),     kPlace, 0};
    SendMessageW(hMainWindow, WM_DRAWITEM, IDC_BLOCK_LIST, reinterpret_cast<LPARAM>(&item));
    SIZE size = {};
    GetTextExtentPoint32W(expected.Dc(), kind.c_str(), static_cast<int>(kind.size()), &size);
    SetBkMode(expected.Dc(), TRANSPARENT);
    if (!kind.empty()) FillRect(expected.Dc(), &kPlace, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetTextColor(expected.Dc(), selected ? RGB(255, 255, 255) : RGB(0, 0, 0));
    TextOutW(expected.Dc(), kPlace.left, kPlace.top, kind.c_str(), static_cast<int>(kind.size()));
    SetTextColor(expected.Dc(), GetSysColor(COLOR_BTNFACE));
    TextOutW(expected.Dc(), kPlace.left + size.cx, kPlace.top, details.c_str(), static_cast<int>(details.size()));
    EXPECT_EQ(Difference(expected.Look(), shown.Look()), "") << "line " << line << ", state " << state;
}

TEST_F(BlockListViewTest, PaintsTheKindAndFaintDetailsBehindIt) {
    const std::string text = "\xFE caf\xE9 \x80 %s\r\nWorld";
    Command(IDM_NEW);
    Block comment = {}, unknown = {};
    comment.kind = kCommentBlock;
    unknown.kind = kUnknownBlock;
    ASSERT_TRUE(SetBlockText(&comment, text.data(), static_cast<uint32_t>(text.size())));
    ASSERT_TRUE(AppendBlock(&document, &comment) && AppendBlock(&document, &unknown));
    ASSERT_TRUE(FillBlockListView(hMainWindow, &document));
    EXPECT_EQ(Lines()[1], "COMMENT\xFE \xFE caf\xE9 \x80 %s");
    for (int state : {ODS_FOCUS, ODS_SELECTED}) {
        ExpectLine(1, state, L"COMMENT", L" \xFE caf\xE9 \x20AC %s");
        ExpectLine(2, state, L"UNKNOWN TYPE", L"");
        ExpectLine(7, state, L"", L"");  // not there
    }
    EXPECT_EQ(SendMessageW(hMainWindow, WM_DRAWITEM, 5, 0), 0) << "another control";
}

TEST_F(BlockListViewTest, ShowsOnTheScreenWhatItHolds) {
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    Open(MakeGif("a.gif"));
    for (bool filled : {true, false}) {
        EXPECT_TRUE(FillBlockListView(hMainWindow, filled ? &document : nullptr));
        SelectLine(hMainWindow, 0);
        UpdateWindow(list);
        EXPECT_EQ(Look(WindowDc(list).Get(), 301, 6).At(300, 5), GetSysColor(filled ? COLOR_HIGHLIGHT : COLOR_WINDOW));
        EXPECT_EQ(GetFocus(), list);
    }
}

TEST_F(BlockListViewTest, FollowsTheWindowSizeDownToTheMinimum) {
    constexpr SIZE kSizes[][2] = {
        {{700, 500}, {700, 500}}, {{399, 600}, {400, 440}}, {{600, 439}, {400, 440}}, {{400, 440}, {400, 440}}};
    for (const auto& [asked, kept] : kSizes) {
        SetWindowPos(hMainWindow, nullptr, 60, 50, asked.cx, asked.cy, SWP_NOZORDER);
        RECT outer = {}, client = {}, list = {};
        GetWindowRect(hMainWindow, &outer);
        EXPECT_TRUE(EqualRect(&outer, std::array{RECT{60, 50, 60 + kept.cx, 50 + kept.cy}}.data())) << asked.cx;
        GetClientRect(hMainWindow, &client);
        GetWindowRect(GetDlgItem(hMainWindow, IDC_BLOCK_LIST), &list);
        MapWindowPoints(nullptr, hMainWindow, reinterpret_cast<POINT*>(&list), 2);
        EXPECT_TRUE(list.left == 8 && list.top == 8 && list.right == client.right - 8);
        // A list box may round its height down to whole lines.
        EXPECT_TRUE(list.bottom > client.bottom - 40 && list.bottom <= client.bottom - 8);
    }
}

}  // namespace
