// Screens of other densities: what is scaled, and that coming back to a usual one leaves nothing behind.
#include "windows/services/screen_scale.h"

#include "tests/gui/picture.h"
#include "tests/gui/window_driver.h"
#include "windows/app/notice_strip.h"
#include "windows/app/panes.h"
#include "windows/ids/message_ids.h"
#include "windows/ids/notice_ids.h"
#include "windows/ids/pane_ids.h"
#include "windows/ids/wizard_ids.h"
#include "windows/services/messages.h"
#include "windows/services/scaled_fonts.h"

namespace {

class ScreenScaleTest : public ShellTest {
protected:
    // Tells the window that it has come to another screen, where it is to take this place.
    static void MoveToScreen(HWND window, int dpi, const RECT& place) {
        SendMessageW(window, kDpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
        PumpMessages();
    }
    static RECT OuterPlace() {
        RECT place = {};
        GetWindowRect(hMainWindow, &place);
        return place;
    }
    static RECT PlaceOf(HWND child) {
        RECT place = {};
        GetWindowRect(child, &place);
        MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
    static RECT PlaceOf(int id) { return PlaceOf(GetDlgItem(hMainWindow, id)); }
    static RECT Client(HWND window) {
        RECT client = {};
        GetClientRect(window, &client);
        return client;
    }
    // With all that can be in it. The list's lines end in the middle of the preview's time for counting bytes.
    void FillWindow() {
        settings.preview = settings.filmstrip = 1;
        Open(MakeGif("a.gif", 60, 40));
        Select(2);
        ApplyOptions(hMainWindow);
        ShowNotice(hMainWindow, "Something of this file is missing, and a sentence as long as this one says so.", true);
        Settle();
    }
    static void Settle() {
        for (DWORD start = GetTickCount(); GetTickCount() - start < 400; Sleep(5)) PumpMessages();
        RedrawWindow(hMainWindow, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
        PumpMessages();
    }
    static Picture Shown() {
        const RECT client = Client(hMainWindow);
        return Look(WindowDc(hMainWindow).Get(), client.right, client.bottom);
    }
};

TEST_F(ScreenScaleTest, LengthsFollowTheDensity) {
    const struct {
        int dpi, eight, one, factor;
    } rows[] = {{96, 8, 1, 1}, {120, 10, 1, 1}, {144, 12, 2, 1}, {191, 16, 2, 1}, {192, 16, 2, 2}, {288, 24, 3, 3}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.dpi);
        EXPECT_EQ(ScaledTo(row.dpi, 8), row.eight);
        EXPECT_EQ(ScaledTo(row.dpi, 1), row.one);
        EXPECT_EQ(WholeFactor(row.dpi), row.factor);
    }
    EXPECT_EQ(SystemMetricAt(SM_CYHSCROLL, DpiOf(nullptr)), GetSystemMetrics(SM_CYHSCROLL));
}

TEST_F(ScreenScaleTest, AWindowAndItsPartsShareWhatItWasTold) {
    const int usual = DpiOf(hMainWindow);
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    NoteDpi(hMainWindow, 2 * usual);
    EXPECT_EQ(DpiOf(hMainWindow), 2 * usual);
    EXPECT_EQ(ScaledFor(list, 5), ScaledTo(2 * usual, 5));
    EXPECT_EQ(DpiOf(nullptr), usual);
    NoteDpi(hMainWindow, usual);
    EXPECT_EQ(DpiOf(list), usual);
}

// 2: the system leaves the scaling to the program on every screen by itself.
TEST_F(ScreenScaleTest, TheProgramScalesItself) {
    HMODULE user = GetModuleHandleW(L"user32.dll");
    auto* context = reinterpret_cast<HANDLE(WINAPI*)()>(
        reinterpret_cast<void*>(GetProcAddress(user, "GetThreadDpiAwarenessContext")));
    auto* awareness = reinterpret_cast<int(WINAPI*)(HANDLE)>(
        reinterpret_cast<void*>(GetProcAddress(user, "GetAwarenessFromDpiAwarenessContext")));
    ASSERT_TRUE(context);
    ASSERT_TRUE(awareness);
    EXPECT_EQ(awareness(context()), 2);
}

TEST_F(ScreenScaleTest, TheMainWindowTakesThePlaceAndScalesItsParts) {
    const int own = DpiOf(hMainWindow);
    FillWindow();
    const RECT before = OuterPlace();
    const LRESULT line = SendDlgItemMessageW(hMainWindow, IDC_BLOCK_LIST, LB_GETITEMHEIGHT, 0, 0);
    for (int dpi : {144, 192}) {
        SCOPED_TRACE(dpi);
        const RECT asked = {7, 9, 7 + ScaledTo(dpi, 600), 9 + ScaledTo(dpi, 500)};
        MoveToScreen(hMainWindow, dpi, asked);
        const RECT taken = OuterPlace(), client = Client(hMainWindow), list = PlaceOf(IDC_BLOCK_LIST);
        EXPECT_TRUE(EqualRect(&taken, &asked)) << taken.right - taken.left << " x " << taken.bottom - taken.top;
        EXPECT_EQ(list.left, ScaledTo(dpi, 8));
        EXPECT_EQ(list.top, ScaledTo(dpi, 8));
        EXPECT_EQ(PlaceOf(IDC_PREVIEW).left, list.right + ScaledTo(dpi, 8));
        EXPECT_EQ(client.bottom - PlaceOf(IDC_FILMSTRIP).bottom, ScaledTo(dpi, 8));
        EXPECT_EQ(SendDlgItemMessageW(hMainWindow, IDC_BLOCK_LIST, LB_GETITEMHEIGHT, 0, 0),
                  MulDiv(static_cast<int>(line), dpi, own));
        RECT cell = {};
        SendDlgItemMessageW(hMainWindow, IDC_FILMSTRIP, LB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&cell));
        EXPECT_EQ(cell.right - cell.left, ScaledTo(dpi, 112));
        HWND notice = GetDlgItem(hMainWindow, IDC_NOTICE), close = GetDlgItem(notice, IDC_NOTICE_CLOSE);
        EXPECT_EQ(Client(close).bottom, ScaledTo(dpi, 20));
        EXPECT_EQ(PlaceOf(notice).bottom, list.bottom);
        const LRESULT font = SendMessageW(close, WM_GETFONT, 0, 0);
        EXPECT_EQ(font, LOWORD(reinterpret_cast<UINT_PTR>(ListFontAt(dpi))));
        EXPECT_EQ(hListFont, ListFontAt(dpi));
    }
    MoveToScreen(hMainWindow, own, before);
    EXPECT_EQ(SendDlgItemMessageW(hMainWindow, IDC_BLOCK_LIST, LB_GETITEMHEIGHT, 0, 0), line);
}

TEST_F(ScreenScaleTest, BackOnAUsualScreenEveryPixelIsAsBefore) {
    FillWindow();
    const RECT place = OuterPlace();
    const int usual = DpiOf(hMainWindow);
    const Picture before = Shown();
    for (int percent : {150, 200}) {
        const int width = place.right - place.left, height = place.bottom - place.top;
        MoveToScreen(hMainWindow, usual * percent / 100,
                     {0, 0, MulDiv(width, percent, 100), MulDiv(height, percent, 100)});
        Settle();
        const Picture dense = Shown();
        EXPECT_GT(dense.width, before.width);
        MoveToScreen(hMainWindow, usual, place);
        Settle();
        EXPECT_EQ(Difference(before, Shown()), "") << percent;
    }
}

// As when the screen itself gets another density.
TEST_F(ScreenScaleTest, TheWindowIsLaidOutAnewAlsoInItsOldPlace) {
    FillWindow();
    const int dense = 2 * DpiOf(hMainWindow);
    const RECT place = {0, 0, ScaledTo(dense, 600), ScaledTo(dense, 500)};
    for (int dpi : {dense / 2, dense}) {
        MoveToScreen(hMainWindow, dpi, place);
        Settle();
        EXPECT_EQ(PlaceOf(IDC_BLOCK_LIST).left, ScaledTo(dpi, 8));
        // 80 pixels of a cell of 112, or as many more of both.
        const WindowDc strip(GetDlgItem(hMainWindow, IDC_FILMSTRIP));
        const int middle = ScaledTo(dpi, 34);
        const COLORREF beside = GetPixel(strip.Get(), ScaledTo(dpi, 13), middle);
        EXPECT_EQ(beside, GetSysColor(COLOR_HIGHLIGHT));
        EXPECT_NE(GetPixel(strip.Get(), ScaledTo(dpi, 20), middle), beside) << dpi;
    }
}

// Texts are laid out in units of the dialog's font, which need not grow as the screen does.
TEST_F(ScreenScaleTest, PicturesInDialogsLeaveTheTextsTheirRoom) {
    DialogAnswers answers({[](HWND message) {
                               HWND picture = FindWindowExW(message, nullptr, L"Static", nullptr);
                               EXPECT_LT(PlaceOf(picture).right, PlaceOf(GetDlgItem(message, IDC_MESSAGE_TEXT)).left);
                               PressButton(message, IDOK);
                           },
                           [](HWND wizard) {
                               const RECT frame = PlaceOf(GetDlgItem(wizard, IDC_WIZARD_FRAME));
                               UpdateWindow(wizard);
                               const WindowDc dc(wizard);
                               int covered = 0;
                               for (LONG y = frame.top; y < frame.bottom; ++y) {
                                   EXPECT_EQ(GetPixel(dc.Get(), frame.left - 2, y), GetSysColor(COLOR_BTNFACE)) << y;
                                   covered += GetPixel(dc.Get(), frame.left / 2, y) != GetSysColor(COLOR_BTNFACE);
                               }
                               EXPECT_GT(covered, (frame.bottom - frame.top) * 9 / 10);
                               PressButton(wizard, IDCANCEL);
                           }});
    MessageBox(hMainWindow, "What is said stands beside the picture.");
    Command(IDM_WIZARD);
}

TEST_F(ScreenScaleTest, TheSmallestSizeGrowsWithTheDensity) {
    const int usual = DpiOf(hMainWindow), dense = 2 * usual;
    MoveToScreen(hMainWindow, dense, {0, 0, 1000, 1000});
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    SetWindowPos(hMainWindow, nullptr, 0, 0, 500, 500, SWP_NOZORDER);
    PumpMessages();
    const RECT place = OuterPlace();
    EXPECT_EQ(place.right - place.left, std::min<long>(ScaledTo(dense, kMinimumWidth), work.right - work.left));
    EXPECT_EQ(place.bottom - place.top, std::min<long>(ScaledTo(dense, kMinimumHeight), work.bottom - work.top));
}

}  // namespace
