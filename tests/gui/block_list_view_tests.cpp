// The list's lines as they are painted, and its place in the window.
#include "app/block_list_view.h"

#include <array>
#include <tuple>

#include "app/services/shell_objects.h"
#include "app/shell_state.h"
#include "resources/command_ids.h"
#include "tests/gui/picture.h"
#include "tests/gui/window_driver.h"

namespace {

constexpr RECT kPlace = {5, 3, 265, 19};

// Has the main window draw list line `line` as the list box would.
Picture Shown(UINT line, int state) {
    Canvas canvas(280, 30, RGB(255, 0, 255));
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    DRAWITEMSTRUCT item = {ODT_LISTBOX, IDC_BLOCK_LIST, line,   ODA_FOCUS, static_cast<UINT>(state),
                           list,        canvas.Dc(),    kPlace, 0};
    SendMessageW(hMainWindow, WM_DRAWITEM, IDC_BLOCK_LIST, reinterpret_cast<LPARAM>(&item));
    return canvas.Look();
}

// The same by plain calls; nothing at all without a kind.
Picture Expected(const std::wstring& kind, const std::wstring& details, bool selected) {
    Canvas canvas(280, 30, RGB(255, 0, 255));
    SIZE size = {};
    GetTextExtentPoint32W(canvas.Dc(), kind.c_str(), static_cast<int>(kind.size()), &size);
    SetBkMode(canvas.Dc(), TRANSPARENT);
    if (!kind.empty()) FillRect(canvas.Dc(), &kPlace, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetTextColor(canvas.Dc(), selected ? RGB(255, 255, 255) : RGB(0, 0, 0));
    TextOutW(canvas.Dc(), kPlace.left, kPlace.top, kind.c_str(), static_cast<int>(kind.size()));
    SetTextColor(canvas.Dc(), GetSysColor(COLOR_BTNFACE));
    TextOutW(canvas.Dc(), kPlace.left + size.cx, kPlace.top, details.c_str(), static_cast<int>(details.size()));
    return canvas.Look();
}

class BlockListViewTest : public ShellTest {};

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
    for (int state : {0, ODS_FOCUS, ODS_SELECTED, ODS_SELECTED | ODS_FOCUS}) {
        bool selected = state & ODS_SELECTED;
        EXPECT_EQ(Difference(Expected(L"COMMENT", L" \xFE caf\xE9 \x20AC %s", selected), Shown(1, state)), "");
        EXPECT_EQ(Difference(Expected(L"UNKNOWN TYPE", L"", selected), Shown(2, state)), "");
        EXPECT_EQ(Difference(Expected(L"", L"", selected), Shown(7, state)), "") << "a line that is not there";
    }
    EXPECT_EQ(SendMessageW(hMainWindow, WM_DRAWITEM, 5, 0), 0) << "another control";
}

TEST_F(BlockListViewTest, ShowsOnTheScreenWhatItHolds) {
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    auto colourAt = [&](int y) {
        UpdateWindow(list);
        HDC dc = GetDC(list);
        COLORREF colour = GetPixel(dc, 300, y);
        ReleaseDC(list, dc);
        return colour;
    };
    Open(MakeGif("a.gif"));
    EXPECT_EQ(colourAt(5), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_TRUE(FillBlockListView(hMainWindow, nullptr));
    EXPECT_TRUE(Lines().empty());
    EXPECT_EQ(colourAt(5), GetSysColor(COLOR_WINDOW));
    EXPECT_EQ(GetFocus(), list);
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
        EXPECT_EQ(std::make_tuple(list.left, list.top, list.right), std::make_tuple(8, 8, client.right - 8));
        EXPECT_LE(list.bottom, client.bottom - 8);
        EXPECT_GT(list.bottom, client.bottom - 40) << "a list box may round its height down to whole lines";
    }
}

}  // namespace
