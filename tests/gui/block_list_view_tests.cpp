// The list's lines as they are painted: colours are read back from a bitmap that stands in for the screen.
#include "app/block_list_view.h"

#include "app/main_window.h"
#include "app/services/shell_objects.h"
#include "app/shell_state.h"
#include "gif/default_blocks.h"
#include "resources/command_ids.h"
#include "tests/gui/window_driver.h"

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);

// A picture of one list line, 360 x 16 pixels at (5, 3) in a field of magenta.
class LinePicture {
public:
    static constexpr int kWidth = 380, kHeight = 30;
    static constexpr COLORREF kAround = RGB(255, 0, 255);
    const RECT place = {5, 3, 365, 19};

    LinePicture() : dc_(CreateCompatibleDC(nullptr)) {
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof(BITMAPINFOHEADER), kWidth, -kHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits;
        bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        previous_ = SelectObject(dc_, bitmap_);
        // Plain edges: every pixel of a letter has the letter's colour.
        font_ = CreateFontW(14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, NONANTIALIASED_QUALITY, 0, L"MS Sans Serif");
        previousFont_ = SelectObject(dc_, font_);
        RECT all = {0, 0, kWidth, kHeight};
        HBRUSH around = CreateSolidBrush(kAround);
        FillRect(dc_, &all, around);
        DeleteObject(around);
    }
    ~LinePicture() {
        SelectObject(dc_, previousFont_);
        SelectObject(dc_, previous_);
        DeleteObject(font_);
        DeleteObject(bitmap_);
        DeleteDC(dc_);
    }

    // Has the main window draw list line `line` as the list box would.
    void Draw(int line, UINT state) {
        DRAWITEMSTRUCT item = {};
        item.CtlType = ODT_LISTBOX;
        item.CtlID = IDC_BLOCK_LIST;
        item.itemID = static_cast<UINT>(line);
        item.itemAction = ODA_FOCUS;  // makes no difference
        item.itemState = state;
        item.hwndItem = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
        item.hDC = dc_;
        item.rcItem = place;
        SendMessageW(hMainWindow, WM_DRAWITEM, IDC_BLOCK_LIST, reinterpret_cast<LPARAM>(&item));
    }

    COLORREF At(int x, int y) const { return GetPixel(dc_, x, y); }

    bool HasInColumns(COLORREF colour, int left, int right) const {
        for (int y = place.top; y < place.bottom; ++y)
            for (int x = left; x < right; ++x)
                if (At(x, y) == colour) return true;
        return false;
    }

    int WidthOf(const wchar_t* text) const {
        SIZE size = {};
        GetTextExtentPoint32W(dc_, text, static_cast<int>(wcslen(text)), &size);
        return size.cx;
    }

private:
    HDC dc_;
    HBITMAP bitmap_;
    HFONT font_;
    HGDIOBJ previous_, previousFont_;
};

class BlockListViewTest : public ShellTest {
protected:
    // A document of a header and one text block.
    void ShowComment(const std::string& text) {
        Command(IDM_NEW);
        Block block;
        ASSERT_TRUE(MakeDefaultBlock(nullptr, &document, &block, kCommentBlock, nullptr, nullptr));
        ASSERT_TRUE(SetBlockText(&block, text.data(), static_cast<uint32_t>(text.size())));
        ASSERT_TRUE(AppendBlock(&document, &block));
        ASSERT_TRUE(FillBlockListView(hMainWindow, &document));
    }
};

TEST_F(BlockListViewTest, PaintsTheKindAndFaintDetailsBehindIt) {
    ShowComment("Hello\r\nWorld");
    const struct {
        UINT state;
        COLORREF back, kind;
    } cases[] = {{0, kWhite, kBlack},
                 {ODS_FOCUS, kWhite, kBlack},
                 {ODS_SELECTED, GetSysColor(COLOR_HIGHLIGHT), kWhite},
                 {ODS_SELECTED | ODS_FOCUS, GetSysColor(COLOR_HIGHLIGHT), kWhite}};
    COLORREF faint = GetSysColor(COLOR_BTNFACE);
    for (const auto& c : cases) {
        LinePicture picture;
        picture.Draw(1, c.state);
        int split = picture.place.left + picture.WidthOf(L"COMMENT");
        int end = split + picture.WidthOf(L" Hello");
        EXPECT_TRUE(picture.HasInColumns(c.kind, picture.place.left, split)) << c.state;
        EXPECT_FALSE(picture.HasInColumns(faint, picture.place.left, split - 1)) << c.state;
        EXPECT_TRUE(picture.HasInColumns(faint, split, end)) << c.state;
        EXPECT_FALSE(picture.HasInColumns(c.kind == kWhite ? kBlack : c.kind, split + 1, end)) << c.state;
        EXPECT_FALSE(picture.HasInColumns(faint, end + 1, picture.place.right)) << "details longer than Hello";
        // The background fills the line to all four corners and nothing outside.
        EXPECT_EQ(picture.At(picture.place.right - 1, picture.place.bottom - 1), c.back);
        EXPECT_EQ(picture.At(picture.place.right - 1, picture.place.top), c.back);
        EXPECT_EQ(picture.At(picture.place.left, picture.place.bottom - 1), c.back);
        EXPECT_EQ(picture.At(picture.place.right, picture.place.bottom - 1), LinePicture::kAround);
        EXPECT_EQ(picture.At(picture.place.right - 1, picture.place.bottom), LinePicture::kAround);
        EXPECT_EQ(picture.At(picture.place.left - 1, picture.place.top), LinePicture::kAround);
    }
}

TEST_F(BlockListViewTest, ALineWithoutDetailsHasOneColour) {
    Command(IDM_NEW);
    Block block = {};
    block.kind = kUnknownBlock;
    ASSERT_TRUE(AppendBlock(&document, &block));
    FillBlockListView(hMainWindow, &document);
    ASSERT_EQ(Lines()[1], "UNKNOWN TYPE");
    LinePicture picture;
    picture.Draw(1, 0);
    EXPECT_TRUE(picture.HasInColumns(kBlack, picture.place.left, picture.place.left + 20));
    EXPECT_FALSE(picture.HasInColumns(GetSysColor(COLOR_BTNFACE), picture.place.left, picture.place.right));
}

TEST_F(BlockListViewTest, OtherControlsAndMissingLinesPaintNothing) {
    Command(IDM_NEW);
    LinePicture picture;
    picture.Draw(7, 0);
    EXPECT_EQ(picture.At(picture.place.left, picture.place.top), LinePicture::kAround);
    EXPECT_EQ(SendMessageW(hMainWindow, WM_DRAWITEM, 5, 0), 0);
}

TEST_F(BlockListViewTest, OnTheScreenTheSelectedLineIsHighlighted) {
    Open(MakeGif("a.gif"));
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    UpdateWindow(list);
    HDC dc = GetDC(list);
    for (int line : {0, 1}) {
        RECT place = {};
        SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&place));
        COLORREF expected = line == 0 ? GetSysColor(COLOR_HIGHLIGHT) : kWhite;
        EXPECT_EQ(GetPixel(dc, place.right - 2, place.top + 2), expected) << line;
    }
    ReleaseDC(list, dc);
}

// Bytes of every kind survive the way from the document into the list and back.
TEST_F(BlockListViewTest, KeepsTheBytesOfTexts) {
    const struct {
        std::string text, line;
    } cases[] = {
        {"caf\xE9 \x80 \xFE!", "COMMENT\xFE caf\xE9 \x80 \xFE!"},
        {"\r\n\r\nHello\r\nWorld", "COMMENT\xFE Hello"},
        {"a\tb\nc", "COMMENT\xFE a b c"},
        {std::string(40, 'x'), "COMMENT\xFE " + std::string(32, 'x')},
        {"50% & more %s", "COMMENT\xFE 50% & more %s"},
    };
    for (const auto& c : cases) {
        ShowComment(c.text);
        EXPECT_EQ(Lines()[1], c.line);
    }
}

TEST_F(BlockListViewTest, ClearingLeavesAnEmptyListThatRedraws) {
    Open(MakeGif("a.gif"));
    EXPECT_TRUE(FillBlockListView(hMainWindow, nullptr));
    EXPECT_TRUE(Lines().empty());
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    EXPECT_EQ(GetFocus(), list);
    UpdateWindow(list);
    HDC dc = GetDC(list);
    EXPECT_EQ(GetPixel(dc, 40, 5), GetSysColor(COLOR_WINDOW)) << "the old line is gone from the screen";
    ReleaseDC(list, dc);
}

TEST_F(BlockListViewTest, FollowsTheWindowSizeDownToTheMinimum) {
    const struct {
        int width, height, keptWidth, keptHeight;
    } cases[] = {{700, 500, 700, 500}, {399, 600, 400, 440}, {600, 439, 400, 440}, {400, 440, 400, 440}};
    for (const auto& c : cases) {
        SetWindowPos(hMainWindow, nullptr, 60, 50, c.width, c.height, SWP_NOZORDER);
        RECT outer = {}, client = {}, list = {};
        GetWindowRect(hMainWindow, &outer);
        EXPECT_EQ(outer.left, 60);
        EXPECT_EQ(outer.top, 50);
        EXPECT_EQ(outer.right - outer.left, c.keptWidth) << c.width;
        EXPECT_EQ(outer.bottom - outer.top, c.keptHeight) << c.height;
        GetClientRect(hMainWindow, &client);
        HWND view = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
        GetWindowRect(view, &list);
        MapWindowPoints(nullptr, hMainWindow, reinterpret_cast<POINT*>(&list), 2);
        EXPECT_EQ(list.left, 8);
        EXPECT_EQ(list.top, 8);
        EXPECT_EQ(list.right, client.right - 8);
        EXPECT_LE(list.bottom, client.bottom - 8);
        EXPECT_GT(list.bottom, client.bottom - 40) << "a list box may round its height down to whole lines";
    }
}

}  // namespace
