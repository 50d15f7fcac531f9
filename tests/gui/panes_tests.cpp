// Preview and filmstrip beside the list, and how mouse and keyboard work in them.
#include <chrono>

#include "tests/gui/panes_test.h"
#include "windows/app/panes.h"

// Behind the Windows headers, which it needs.
#include <oleacc.h>

namespace {

TEST_F(PanesTest, ThePlacesAreAsEverWithoutThemAndComeBack) {
    const RECT before = PlaceOf(List());
    EXPECT_FALSE(Preview());
    EXPECT_FALSE(Strip());
    RECT outer = {};
    GetWindowRect(hMainWindow, &outer);
    for (int option : {IDM_PREVIEW, IDM_FILMSTRIP}) Command(option);
    const RECT list = PlaceOf(List()), preview = PlaceOf(Preview()), strip = PlaceOf(Strip());
    RECT client = {};
    GetClientRect(hMainWindow, &client);
    EXPECT_EQ(preview.left, list.right + 8);
    EXPECT_EQ(preview.right, client.right - 8);
    EXPECT_EQ(preview.top, 8);
    EXPECT_EQ(strip.top, preview.bottom + 8);
    EXPECT_EQ(strip.left, 8);
    EXPECT_EQ(strip.right, client.right - 8);
    EXPECT_EQ(strip.bottom, client.bottom - 8);
    EXPECT_LE(list.bottom, strip.top - 8);
    for (int option : {IDM_PREVIEW, IDM_FILMSTRIP}) Command(option);
    SetWindowPos(hMainWindow, nullptr, outer.left, outer.top, outer.right - outer.left, outer.bottom - outer.top,
                 SWP_NOZORDER);
    PumpMessages();
    EXPECT_FALSE(Preview());
    EXPECT_FALSE(Strip());
    const RECT after = PlaceOf(List());
    EXPECT_TRUE(EqualRect(&before, &after));
}

TEST_F(PanesTest, TheWindowIsAsWideAsBeforeWhenThePreviewGoes) {
    // Where the window comes to rest: a window manager answers when it likes, also to what was asked before.
    auto outer = [] {
        RECT place = {}, now = {};
        for (int quiet = 0; quiet < 40; ++quiet, Sleep(5)) {
            PumpMessages();
            GetWindowRect(hMainWindow, &now);
            if (!EqualRect(&place, &now)) quiet = 0;
            place = now;
        }
        return place;
    };
    auto put = [&](int left, int top, int width, int height) {
        SetWindowPos(hMainWindow, nullptr, left, top, width, height, SWP_NOZORDER);
        outer();
    };
    outer();
    put(600, 50, 500, 450);  // too far right to become wider there
    const RECT before = outer();
    Command(IDM_PREVIEW);
    const RECT wide = outer();
    EXPECT_EQ(wide.right - wide.left, 760);
    EXPECT_LT(wide.left, before.left);
    Command(IDM_PREVIEW);
    const RECT after = outer();
    EXPECT_TRUE(EqualRect(&before, &after));
    struct {
        const char* name;
        RECT then;  // left, top, width and height while there is a preview
        RECT left;  // and when it is gone
    } const cases[] = {{"moved", {20, 90, 760, 450}, {20, 90, 500, 450}},
                       {"made wider", {20, 90, 800, 450}, {20, 90, 800, 450}},
                       {"made higher", {20, 90, 760, 500}, {20, 90, 760, 500}}};
    for (const auto& is : cases) {
        SCOPED_TRACE(is.name);
        put(20, 50, 500, 450);
        Command(IDM_PREVIEW);
        outer();
        put(is.then.left, is.then.top, is.then.right, is.then.bottom);
        Command(IDM_PREVIEW);
        const RECT left = outer();
        EXPECT_EQ(left.left, is.left.left);
        EXPECT_EQ(left.top, is.left.top);
        EXPECT_EQ(left.right - left.left, is.left.right);
        EXPECT_EQ(left.bottom - left.top, is.left.bottom);
    }
    put(20, 50, 800, 450);  // wide enough: nothing is given, nothing is taken
    Command(IDM_PREVIEW);
    Command(IDM_PREVIEW);
    EXPECT_EQ(outer().right - outer().left, 800);
}

TEST_F(PanesTest, TheFilmstripHasEveryFrameAndSelectsItsLineAndTheOtherWayRound) {
    Command(IDM_FILMSTRIP);
    Show(TestAnimation());
    Settle();
    EXPECT_EQ(SendMessageW(Strip(), LB_GETCOUNT, 0, 0), 3);
    wchar_t text[64] = L"";
    SendMessageW(Strip(), LB_GETTEXT, 2, reinterpret_cast<LPARAM>(text));
    EXPECT_EQ(Utf8FromWide(text), "Frame 3, 0.25 s");
    const std::pair<int, int> lines[] = {{0, 0}, {kFirstImage, 0}, {3, 1}, {kSecondControl, 1}, {kThirdImage, 2}};
    for (const auto& [line, frame] : lines) {
        Select(line);
        EXPECT_EQ(SelectedFrame(Strip()), frame) << line;
    }
    SetFocus(Strip());
    Press(Strip(), VK_LEFT);
    EXPECT_EQ(SelectedFrame(Strip()), 1);
    EXPECT_EQ(Selection(), kSecondImage);
    EXPECT_EQ(selectedLine, static_cast<uint32_t>(kSecondImage)) << "commands know of it";
    Command(IDM_CLOSE);
    EXPECT_EQ(SendMessageW(Strip(), LB_GETCOUNT, 0, 0), 0);
}

TEST_F(PanesTest, TheFilmstripsCellsArePicturesOfTheFrames) {
    Command(IDM_FILMSTRIP);
    Show(TestAnimation());
    Settle();
    for (UINT frame = 0; frame < 3; ++frame) {
        const RECT cell = {0, 0, 112, 90};
        Canvas shown(112, 90, RGB(255, 0, 255));
        DRAWITEMSTRUCT item = {ODT_LISTBOX, IDC_FILMSTRIP, frame, ODA_DRAWENTIRE, 0, Strip(), shown.Dc(), cell, 0};
        SendMessageW(hMainWindow, WM_DRAWITEM, IDC_FILMSTRIP, reinterpret_cast<LPARAM>(&item));
        const ComposedFrame composed = Compose(document, frame);
        constexpr int kScale = 2, kLeft = 16, kTop = 4;  // the largest for 40 x 30 in 96 x 60
        const Picture look = shown.Look();
        int wrong = 0;
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 80; ++x) {
                const auto at = static_cast<size_t>(y / kScale * 40 + x / kScale);
                const COLORREF check = (x / 8 + y / 8) % 2 == 0 ? RGB(255, 255, 255) : RGB(204, 204, 204);
                const uint32_t colour = composed.pixels[at];
                const COLORREF is = composed.isOpaque[at] ? RGB(colour >> 16, colour >> 8, colour) : check;
                wrong += look.At(kLeft + x, kTop + y) != is;
            }
        EXPECT_EQ(wrong, 0) << "frame " << frame;
    }
}

TEST_F(PanesTest, AChangeOfTheDocumentShowsAndUndoTakesItBack) {
    Command(IDM_PREVIEW);
    Command(IDM_FILMSTRIP);
    Show(TestAnimation());
    StartHistory(true);
    Select(kSecondImage);
    Settle();
    Command(IDM_DELETE);
    EXPECT_EQ(SendMessageW(Strip(), LB_GETCOUNT, 0, 0), 2);
    Command(IDM_UNDO);
    EXPECT_EQ(SendMessageW(Strip(), LB_GETCOUNT, 0, 0), 3);
    Select(kThirdImage);
    Settle();
    ExpectFrame(2, 1, {30, 20, 50, 40});
    documentChanged = false;
}

TEST_F(PanesTest, TabGoesRoundThePanesAndSpacePlaysAndStops) {
    Command(IDM_PREVIEW);
    Command(IDM_FILMSTRIP);
    Show(TestAnimation());
    SetFocus(List());
    for (HWND stop : {Preview(), Strip(), List()}) {
        Press(GetFocus(), VK_TAB);
        EXPECT_EQ(GetFocus(), stop);
    }
    for (HWND from : {List(), Preview(), Strip()}) {
        Select(kFirstImage);
        Press(from, VK_SPACE);
        EXPECT_TRUE(IsPlaying(Preview()));
        const auto now = [] { return std::chrono::steady_clock::now(); };
        const auto limit = now() + std::chrono::seconds(10);
        while (NameOf(Preview()).find("Frame 2 of 3") == std::string::npos && now() < limit) PumpMessages();
        Press(from, VK_SPACE);
        EXPECT_FALSE(IsPlaying(Preview()));
        EXPECT_NE(Selection(), kFirstImage) << "the line of the frame that it stopped at";
    }
    SetFocus(Strip());
    Command(IDM_FILMSTRIP);
    EXPECT_EQ(GetFocus(), List()) << "the focus does not go with its pane";
    Command(IDM_PREVIEW);
    Press(List(), VK_TAB);
    EXPECT_EQ(GetFocus(), List());
}

// What a menu, a dialog or the mouse is about to do is about that line.
TEST_F(PanesTest, TheFocusIsWhereItWasAfterADialog) {
    // A window manager gives it back when it likes.
    const auto awaitFocus = [](HWND stop) {
        for (int wait = 0; wait < 500 && GetFocus() != stop; ++wait, Sleep(10)) PumpMessages();
        EXPECT_EQ(GetFocus(), stop);
    };
    Command(IDM_PREVIEW);
    Command(IDM_FILMSTRIP);
    Show(TestAnimation());
    for (HWND stop : {List(), Preview(), Strip()}) {
        for (int command : {IDM_ABOUT, IDM_CHECK}) {
            SCOPED_TRACE(std::to_string(GetDlgCtrlID(stop)) + " " + std::to_string(command));
            SetFocus(stop);
            awaitFocus(stop);
            DialogAnswers answers({[](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); }});
            Command(command);
            awaitFocus(stop);
        }
    }
    Select(kFirstImage);
    SetFocus(List());
    awaitFocus(List());
    DialogAnswers answers({[](HWND viewer) { PostMessageW(viewer, WM_CHAR, VK_ESCAPE, 0); }});
    Command(IDM_VIEW);
    awaitFocus(List());
    Press(GetFocus(), VK_DOWN);
    EXPECT_EQ(Selection(), kFirstImage + 1) << "the arrow keys go on from the line";
}

TEST_F(PanesTest, ScreenReadersAreToldWhatThePanesShow) {
    Command(IDM_PREVIEW);
    Command(IDM_FILMSTRIP);
    Show(TestAnimation());
    Select(kThirdImage);
    auto tell = [](HWND window) {
        IAccessible* object = nullptr;
        VARIANT self = {};
        self.vt = VT_I4;
        self.lVal = CHILDID_SELF;
        BSTR name = nullptr;
        std::string text = "(no object)";
        void** address = reinterpret_cast<void**>(&object);
        const auto client = static_cast<DWORD>(OBJID_CLIENT);
        const HRESULT result = AccessibleObjectFromWindow(window, client, __uuidof(IAccessible), address);
        if (result != S_OK) return "result " + std::to_string(result);
        text = object->get_accName(self, &name) == S_OK && name ? Utf8FromWide(name) : "(no name)";
        SysFreeString(name);
        object->Release();
        return text;
    };
    EXPECT_EQ(tell(Preview()).find("Preview: Frame 3 of 3; At 30, 20: 20 x 20; Delay 25/100 s"), 0u);
    EXPECT_EQ(tell(Strip()), "Filmstrip");
}

TEST_F(PanesTest, NothingIsLeftBehind) {
    // How many more GDI objects there may be: counted by creating them, as not every system tells.
    auto freeObjects = [] {
        std::vector<HBRUSH> taken;
        while (HBRUSH brush = CreateSolidBrush(0)) taken.push_back(brush);
        for (HBRUSH brush : taken) DeleteObject(brush);
        return taken.size();
    };
    size_t before = 0;
    for (int round = -2; round < 30; ++round) {
        if (round == 0) before = freeObjects();
        Command(IDM_PREVIEW);
        Command(IDM_FILMSTRIP);
        Show(TestAnimation());
        for (int line : {kFirstImage, kSecondImage, kThirdImage}) Select(line), Settle(), Painted(Preview());
        Command(IDM_PREVIEW);
        Command(IDM_FILMSTRIP);
    }
    EXPECT_GT(freeObjects() + 30, before) << "one object lost in each round would show";
}

// How long the window is not answering, in the log: not asserted.

}  // namespace
