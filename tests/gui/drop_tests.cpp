// Files dropped on the window and on the wizard, and lines dragged.
#include "tests/gui/editor_test.h"
#include "windows/app/document_history.h"
#include "windows/app/notice_strip.h"
#include "windows/ids/notice_ids.h"
#include "windows/ids/wizard_ids.h"
// After windows.h.
#include <shellapi.h>
#include <shlobj.h>

namespace {

class DropTest : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        FillBlockListView(hMainWindow, &document);
    }
    // Drops the files (UTF-8) on the window, at a place in pixels from its corner, as another program does.
    static void Drop(HWND window, const std::vector<std::string>& paths, POINT place, bool withControl = false) {
        std::wstring names;
        for (const std::string& path : paths) names += WideFromUtf8(path) + L'\0';
        names.append(2, L'\0');  // also for none
        HGLOBAL memory = GlobalAlloc(GHND, sizeof(DROPFILES) + names.size() * sizeof(wchar_t));
        auto* drop = static_cast<DROPFILES*>(GlobalLock(memory));
        *drop = {sizeof(DROPFILES), place, FALSE, TRUE};
        memcpy(drop + 1, names.data(), names.size() * sizeof(wchar_t));
        GlobalUnlock(memory);
        BYTE state[256] = {}, up[256] = {};
        if (withControl) state[VK_CONTROL] = 0x80;
        SetKeyboardState(state);
        SendMessageW(window, WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
        SetKeyboardState(up);
        PumpMessages();
    }
    // Of the middle of a line, in pixels from the corner of the main window or of the list.
    static POINT OnLine(int line, HWND from) {
        const HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
        RECT item = {};
        SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&item));
        POINT place = {item.left + 30, (item.top + item.bottom) / 2};
        MapWindowPoints(list, from, &place, 1);
        return place;
    }
    static void Mouse(UINT message, POINT place, WPARAM buttons) {
        const HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
        SendMessageW(list, message, buttons, MAKELPARAM(place.x, place.y));
        PumpMessages();
    }
};

TEST_F(DropTest, TheFirstFileOpens) {
    documentChanged = true;
    {
        DialogAnswers answers({Press(IDCANCEL)});
        Drop(hMainWindow, {MakeGif("b.gif"), MakeGif("a.gif")}, {50, 50});
    }
    EXPECT_EQ(KindsOf(document), "123467259083") << "Cancel at the question whether to save";
    {
        DialogAnswers answers({Press(IDNO)});
        Drop(hMainWindow, {File("b.gif"), File("a.gif")}, {50, 50});
    }
    EXPECT_EQ(currentFileName, File("b.gif"));
    EXPECT_TRUE(GetWindowLongPtrW(hMainWindow, GWL_EXSTYLE) & WS_EX_ACCEPTFILES);
    // Without a document Ctrl opens, too. A dialog that is open comes first.
    Command(IDM_CLOSE);
    Drop(hMainWindow, {File("a.gif")}, {50, 50}, true);
    EXPECT_EQ(currentFileName, File("a.gif"));
    EnableWindow(hMainWindow, FALSE);
    Drop(hMainWindow, {File("b.gif")}, {50, 50});
    EnableWindow(hMainWindow, TRUE);
    EXPECT_EQ(currentFileName, File("a.gif"));
    Drop(hMainWindow, {}, {50, 50});
    EXPECT_EQ(currentFileName, File("a.gif"));
}

TEST_F(DropTest, WithControlTheFilesAreInsertedBehindTheLine) {
    const std::vector<std::string> files = {MakeGif("b.gif", 5, 5), MakeGif("a.gif", 4, 4)};
    Drop(hMainWindow, files, OnLine(3, hMainWindow), true);
    EXPECT_EQ(KindsOf(document), "12342267259083");
    EXPECT_EQ(GetImageFields(At(4)).width, 4) << "in the order of their names";
    EXPECT_EQ(*UndoName(), "Insert 2 images");
    Command(IDM_UNDO);
    EXPECT_EQ(KindsOf(document), "123467259083");
    POINT below = OnLine(kSampleLastControl, hMainWindow);
    below.y += 40;
    Drop(hMainWindow, {files[0]}, below, true);
    EXPECT_EQ(KindsOf(document), "1234672590832") << "behind the last line";
}

TEST_F(DropTest, TheWizardsListTakesFiles) {
    const std::string a = MakeGif("a.gif"), b = MakeGif("b.gif");
    DialogAnswers answers({[&](HWND dialog) {
        HWND list = GetDlgItem(dialog, IDC_WIZARD_FILES);
        RECT area = {};
        GetWindowRect(list, &area);
        POINT inside = {area.left + 5, area.top + 5};
        ScreenToClient(dialog, &inside);
        auto count = [&] { return SendMessageW(list, LB_GETCOUNT, 0, 0); };
        Drop(dialog, {a}, inside);
        EXPECT_EQ(count(), 0) << "another page is shown";
        for (int page = 0; page < 5; ++page) PressButton(dialog, IDC_WIZARD_NEXT);
        Drop(dialog, {b, a}, inside);
        Drop(dialog, {b}, {2, 2});
        EXPECT_EQ(count(), 2);
        wchar_t text[300] = L"";
        SendMessageW(list, LB_GETTEXT, 0, reinterpret_cast<LPARAM>(text));
        EXPECT_EQ(Utf8FromWide(text), a);
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog, IDC_WIZARD_DELETE)));
        PressButton(dialog, IDCANCEL);
    }});
    documentChanged = false;
    SendMessageW(hMainWindow, WM_COMMAND, IDM_WIZARD, 0);
}

TEST_F(DropTest, ALineThatIsDraggedMovesItsBlock) {
    const HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    struct Row {
        int from, to;
        int above;  // pixels above the middle of the line
        const char* kinds;
        int selection;
    };
    const Row rows[] = {
        {1, 4, -2, "134627259083", 4},                                // behind line 4
        {1, 4, 6, "134267259083", 3},                                 // and before it
        {8, 1, 6, "192346725083", 1},  {3, 3, 0, "123467259083", 3},  // a click
        {3, 4, 3, "123467259083", 3},                                 // back to where it is
        {0, 4, 0, "123467259083", 0},                                 // the header stays
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.from << " to " << row.to);
        POINT end = OnLine(row.to, list);
        end.y -= row.above;
        Mouse(WM_LBUTTONDOWN, OnLine(row.from, list), MK_LBUTTON);
        if (row.from != row.to) {
            POINT way = OnLine(row.from, list);
            way.y += row.from < row.to ? 12 : -12;
            Mouse(WM_MOUSEMOVE, way, MK_LBUTTON);
            Mouse(WM_MOUSEMOVE, end, MK_LBUTTON);
        }
        Mouse(WM_LBUTTONUP, end, 0);
        EXPECT_NE(GetCapture(), list);
        EXPECT_EQ(KindsOf(document), row.kinds);
        EXPECT_EQ(Selection(), row.selection);
        if (UndoName()) Command(IDM_UNDO);
        ASSERT_EQ(KindsOf(document), "123467259083");
    }
    enum { kEscape, kEscapeOverNotice, kOtherButton };
    for (int way : {kEscape, kEscapeOverNotice, kOtherButton}) {
        if (way == kEscapeOverNotice) ShowNotice(hMainWindow, "Escape takes this away, too.", false);
        Mouse(WM_LBUTTONDOWN, OnLine(2, list), MK_LBUTTON);
        Mouse(WM_MOUSEMOVE, OnLine(5, list), MK_LBUTTON);
        EXPECT_EQ(GetCapture(), list);
        const bool isKey = way != kOtherButton;
        SendMessageW(list, isKey ? WM_KEYDOWN : WM_RBUTTONDOWN, isKey ? VK_ESCAPE : MK_RBUTTON, 0);
        PumpMessages();
        EXPECT_NE(GetCapture(), list);
        EXPECT_EQ(GetDlgItem(hMainWindow, IDC_NOTICE) != nullptr, way == kEscapeOverNotice) << "the drag comes first";
        HideNotice(hMainWindow);
        Mouse(WM_LBUTTONUP, OnLine(5, list), 0);
        EXPECT_EQ(KindsOf(document), "123467259083");
        EXPECT_EQ(UndoName(), nullptr);
    }
}

}  // namespace
