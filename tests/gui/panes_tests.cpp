// Preview and filmstrip: what they show, and how mouse and keyboard work in them.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

#include "gif/whole_writer.h"
#include "size/heat_map.h"
#include "size/pixel_costs.h"
#include "tests/gui/animation.h"
#include "tests/gui/composed.h"
#include "tests/gui/window_driver.h"
#include "windows/app/filmstrip.h"
#include "windows/app/panes.h"
#include "windows/app/preview.h"
#include "windows/ids/pane_ids.h"
#include "windows/services/screen_scale.h"

// Behind the Windows headers, which it needs.
#include <oleacc.h>

namespace {

// Lines of TestAnimation.
constexpr int kFirstImage = 2, kSecondControl = 4, kSecondImage = 5, kThirdImage = 7;

// 40 x 30 pixels in three frames: with transparency, disposal, and an image that reaches beyond the screen.
Animation TestAnimation() {
    Animation made(40, 30);
    made.Control(2, 10, 3).Image({4, 5, 20, 10}).Comment().Control(1, 1).Image({10, 8, 16, 16, 8, false, true, 2});
    made.Control(3, 25, 0).Image({30, 20, 20, 20, 8, false, false, 3});
    return made;
}

class PanesTest : public ShellTest {
protected:
    HWND Preview() const { return GetDlgItem(hMainWindow, IDC_PREVIEW); }
    HWND Strip() const { return GetDlgItem(hMainWindow, IDC_FILMSTRIP); }
    HWND List() const { return GetDlgItem(hMainWindow, IDC_BLOCK_LIST); }

    void Show(Animation made) {
        ASSERT_TRUE(CopyBlockList(*made.List(), &document));
        FillBlockListView(hMainWindow, &document);
        SelectLine(hMainWindow, 0);
        PumpMessages();
    }
    // Until both panes show all that they are to show, with a generous limit.
    void Settle() const {
        for (int wait = 0; wait < 2000 && !IsSettled(); ++wait, Sleep(5)) PumpMessages();
        EXPECT_TRUE(IsSettled());
    }
    // Until the words have them, too.
    void CountBytes() const {
        Settle();
        for (int wait = 0; wait < 200 && NameOf(Preview()).find("bytes") == std::string::npos; ++wait, Sleep(10))
            PumpMessages();
    }
    bool IsSettled() const {
        return (!Preview() || IsPreviewReady(Preview())) && (!Strip() || IsFilmstripReady(Strip()));
    }
    RECT PlaceOf(HWND child) const {
        RECT place = {};
        GetWindowRect(child, &place);
        MapWindowPoints(nullptr, hMainWindow, reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
    static std::string NameOf(HWND pane) {
        wchar_t name[512] = L"";
        GetWindowTextW(pane, name, 512);
        return Utf8FromWide(name);
    }
    static Picture Painted(HWND pane) {
        RECT client = {};
        GetClientRect(pane, &client);
        Canvas canvas(client.right, client.bottom, RGB(255, 0, 255));
        SendMessageW(pane, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.Dc()), 0);
        return canvas.Look();
    }
    static void Press(HWND control, WPARAM key) {
        SendMessageW(control, WM_KEYDOWN, key, 0);
        PumpMessages();
    }
    static void Wheel(HWND to, int notches, POINT at) {
        ClientToScreen(to, &at);
        SendMessageW(to, WM_MOUSEWHEEL, MAKEWPARAM(0, notches * WHEEL_DELTA), MAKELPARAM(at.x, at.y));
        PumpMessages();
    }
    // The parts of the screen that are pixels of the canvas, in the preview, at `scale`, with the canvas in the middle;
    // a place for three lines of text is under it.
    void ExpectFrame(uint32_t frame, int scale, const RECT& outlined) {
        SCOPED_TRACE("frame " + std::to_string(frame) + ", scale " + std::to_string(scale));
        const ComposedFrame composed = Compose(document, frame);
        const Picture shown = Painted(Preview());
        WindowDc dc(Preview());
        SelectedObject font(dc.Get(), hListFont);
        TEXTMETRICW metric = {};
        GetTextMetricsW(dc.Get(), &metric);
        const int height = shown.height - 3 * static_cast<int>(metric.tmHeight) - ScaledFor(Preview(), 8);
        const int square = ScaledFor(Preview(), 8), dash = ScaledFor(Preview(), 4);
        const int left = (shown.width - composed.width * scale) / 2, top = (height - composed.height * scale) / 2;
        const RECT outline = {left + outlined.left * scale - 1, top + outlined.top * scale - 1,
                              left + outlined.right * scale, top + outlined.bottom * scale};
        int wrong = 0, dashes = 0;
        for (int y = top; y < top + composed.height * scale; ++y)
            for (int x = left; x < left + composed.width * scale; ++x) {
                const bool isInRange =
                    x >= outline.left && x <= outline.right && y >= outline.top && y <= outline.bottom;
                const bool isEdge = x == outline.left || x == outline.right || y == outline.top || y == outline.bottom;
                const auto at = static_cast<size_t>((y - top) / scale * composed.width + (x - left) / scale);
                const uint32_t colour = composed.pixels[at];
                COLORREF expected = RGB(colour >> 16, colour >> 8, colour);
                const bool isLight = ((x - left) / square + (y - top) / square) % 2 == 0;
                if (!composed.isOpaque[at]) expected = isLight ? RGB(255, 255, 255) : RGB(204, 204, 204);
                if (isInRange && isEdge) expected = (x + y) / dash % 2 == 0 ? RGB(0, 0, 0) : RGB(255, 255, 255);
                dashes += isInRange && isEdge;
                wrong += shown.At(x, y) != expected;
            }
        EXPECT_EQ(wrong, 0);
        EXPECT_GT(dashes, 0) << "an outline lies within";
    }
};

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

TEST_F(PanesTest, ThePreviewsNaturalSizeFollowsTheDensityOfTheScreen) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    Select(kSecondImage);
    for (const auto& [dpi, scale] : {std::pair(144, 1), {192, 2}, {96, 1}}) {
        const RECT place = {0, 0, 1200, 900};
        SendMessageW(hMainWindow, kDpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
        Settle();
        ExpectFrame(1, scale, {10, 8, 26, 24});
    }
}

TEST_F(PanesTest, ThePreviewShowsTheComposedFrameOfTheSelectedLine) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    const struct {
        int line;
        uint32_t frame;
        RECT outlined;
    } cases[] = {{0, 0, {4, 5, 24, 15}},
                 {kFirstImage, 0, {4, 5, 24, 15}},
                 {kSecondControl, 1, {10, 8, 26, 24}},
                 {kSecondImage, 1, {10, 8, 26, 24}},
                 {kThirdImage, 2, {30, 20, 50, 40}},
                 {kFirstImage, 0, {4, 5, 24, 15}}};
    for (const auto& is : cases) {
        Select(is.line);
        Settle();
        ExpectFrame(is.frame, 1, is.outlined);
    }
    Select(kSecondImage);
    Press(Preview(), VK_ADD);
    ExpectFrame(1, 2, {10, 8, 26, 24});
    Press(Preview(), VK_OEM_PLUS);
    ExpectFrame(1, 3, {10, 8, 26, 24});
    Press(Preview(), VK_SUBTRACT);
    Press(Preview(), '0');
    ExpectFrame(1, 1, {10, 8, 26, 24});
    Press(Preview(), VK_PRIOR);
    EXPECT_EQ(Selection(), kFirstImage) << "Page Up";
    Press(Preview(), VK_NEXT);
    EXPECT_EQ(Selection(), kSecondImage) << "Page Down";
}

TEST_F(PanesTest, TheWheelZoomsAboutThePointUnderTheMouseFromTheListToo) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    Settle();
    const POINT at = {Painted(Preview()).width / 2 + 3, 100};
    const Picture before = Painted(Preview());
    Wheel(Preview(), 1, at);
    const Picture twice = Painted(Preview());
    EXPECT_NE(Difference(before, twice), "");
    Wheel(Preview(), -1, at);
    EXPECT_EQ(Difference(before, Painted(Preview())), "");
    POINT onScreen = at;
    ClientToScreen(Preview(), &onScreen);
    SendMessageW(List(), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), MAKELPARAM(onScreen.x, onScreen.y));
    EXPECT_EQ(Difference(twice, Painted(Preview())), "");
}

TEST_F(PanesTest, TheWordsSayPlaceDelayAndBytes) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    Select(kSecondImage);
    CountBytes();
    // The file without the image is shorter by as much.
    size_t sizes[2] = {};
    for (bool without : {false, true}) {
        BlockList list;
        ASSERT_TRUE(CopyBlockList(document, &list));
        if (without)
            std::move(list.blocks.get() + kSecondImage + 1, list.blocks.get() + list.count--,
                      list.blocks.get() + kSecondImage);
        ASSERT_TRUE(WriteWholeGifFile(list, File("bytes.gif").c_str(), nullptr));
        sizes[without] = ReadAll(File("bytes.gif")).size();
    }
    EXPECT_EQ(NameOf(Preview()), "Preview: Frame 2 of 3; At 10, 8: 16 x 16; Delay 1/100 s (played as 10), " +
                                     std::to_string(sizes[0] - sizes[1]) + " bytes");
    Command(IDM_CLOSE);
    EXPECT_EQ(NameOf(Preview()), "Preview: Nothing to show");
}

TEST_F(PanesTest, PricesOfPixelsLieOverTheFrameAndGoAgain) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    Select(kThirdImage);  // which reaches beyond the screen
    CountBytes();
    const Picture plain = Painted(Preview());
    const std::string words = NameOf(Preview());
    auto expectPrices = [&](int line, uint32_t frame) {
        SCOPED_TRACE(line);
        Settle();
        EXPECT_NE(NameOf(Preview()).find("; Bits of a pixel: "), std::string::npos) << NameOf(Preview());
        const Block& image = document.blocks[static_cast<uint32_t>(line)];
        PixelCosts costs;
        ASSERT_TRUE(MeasurePixelCosts(image, &costs));
        const HeatMapColours colours = MakeHeatMapColours();
        const ComposedFrame composed = Compose(document, frame);
        const ImageFields fields = GetImageFields(image);
        const Picture shown = Painted(Preview());
        WindowDc dc(Preview());
        SelectedObject font(dc.Get(), hListFont);
        TEXTMETRICW metric = {};
        GetTextMetricsW(dc.Get(), &metric);
        const int height = shown.height - 4 * static_cast<int>(metric.tmHeight) - 8;  // a line more
        const int left = (shown.width - composed.width) / 2, top = (height - composed.height) / 2;
        int wrong = 0, heated = 0;
        for (int y = 0; y < composed.height; ++y)
            for (int x = 0; x < composed.width; ++x) {
                const int column = x - fields.left, row = y - fields.top;
                const bool isInside = column >= 0 && row >= 0 && column < fields.width && row < fields.height;
                const bool isOutline = x >= fields.left - 1 && x <= fields.left + fields.width && y >= fields.top - 1 &&
                                       y <= fields.top + fields.height && !isInside;
                const auto at = static_cast<size_t>(y * composed.width + x);
                if (isOutline || (!isInside && !composed.isOpaque[at])) continue;
                COLORREF expected = RGB(composed.pixels[at] >> 16, composed.pixels[at] >> 8, composed.pixels[at]);
                // A canvas has red in the lowest byte, as COLORREF does.
                if (isInside) expected = colours[HeatMapEntry(costs.Row(row)[column])] & 0xFFFFFF;
                heated += isInside;
                wrong += shown.At(left + x, top + y) != expected;
            }
        EXPECT_EQ(wrong, 0);
        EXPECT_GT(heated, 0);
    };
    Press(Preview(), 'P');
    expectPrices(kThirdImage, 2);
    Select(kFirstImage);
    expectPrices(kFirstImage, 0);
    Press(Preview(), VK_SPACE);
    EXPECT_EQ(NameOf(Preview()).find("Bits"), std::string::npos) << "not while it plays";
    Press(Preview(), VK_SPACE);
    Select(kThirdImage);
    expectPrices(kThirdImage, 2);
    Press(Preview(), 'P');
    CountBytes();
    EXPECT_EQ(Difference(plain, Painted(Preview())), "");
    EXPECT_EQ(NameOf(Preview()), words);

    // Where there is nothing to be measured, that is said.
    Press(Preview(), 'P');
    Animation none(40, 30);
    none.Comment().Image({0, 0, 10, 10});
    none.List()->blocks[2].data = nullptr;
    Show(std::move(none));
    Settle();
    EXPECT_NE(NameOf(Preview()).find("No pixels that cost bits"), std::string::npos) << NameOf(Preview());
    Command(IDM_CLOSE);
    EXPECT_EQ(NameOf(Preview()), "Preview: Nothing to show");
}

TEST_F(PanesTest, TooLargeAScreenIsRefusedInAWordAndALaterOneShown) {
    Command(IDM_PREVIEW);
    Command(IDM_FILMSTRIP);
    Animation large(65535, 65535);
    large.Image({0, 0, 4, 4});
    Show(std::move(large));
    Settle();
    const Picture refused = Painted(Preview());
    Show(TestAnimation());
    Settle();
    EXPECT_NE(Difference(refused, Painted(Preview())), "");
    ExpectFrame(0, 1, {4, 5, 24, 15});
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
TEST_F(PanesTest, TheEndOfPlayingChoosesNoOtherLineInTheMidstOfSomething) {
    static int looks, lineAtLast;
    static bool isAtLast;
    constexpr int kLooks = 50;  // behind the last frame, one in 10 ms
    const auto look = [](HWND, UINT, UINT_PTR timer, DWORD) {
        HWND pane = GetDlgItem(hMainWindow, IDC_PREVIEW);
        isAtLast = isAtLast || NameOf(pane).find("Frame 3 of 3") != std::string::npos;
        if (!isAtLast || ++looks < kLooks) return;
        KillTimer(nullptr, timer);
        lineAtLast = SelectedLine(hMainWindow);
        EndMenu();
        if (GetCapture()) ReleaseCapture();
        if (HWND dialog = FindWindowW(L"#32770", nullptr)) PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    };
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    const struct {
        const char* name;
        std::function<void()> begin;
    } cases[] = {{"menu", [&] { SendMessageW(hMainWindow, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(List()), -1); }},
                 {"dialog", [] { SendMessageW(hMainWindow, WM_COMMAND, IDM_ABOUT, 0); }},
                 {"mouse", [&] {
                      SetCapture(List());
                      while (GetCapture()) PumpMessages();
                  }}};
    for (const auto& [name, begin] : cases) {
        SCOPED_TRACE(name);
        Select(kFirstImage);
        Settle();
        looks = 0, lineAtLast = -2, isAtLast = false;
        SetTimer(nullptr, 0, 10, look);
        PlayOrStop(Preview());
        begin();
        EXPECT_EQ(lineAtLast, kFirstImage);
        Settle();
        EXPECT_EQ(Selection(), kThirdImage) << "afterwards it does";
    }
}

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

TEST_F(PanesTest, PlayingEndsAtTheEndUnlessTheDocumentLoops) {
    Command(IDM_PREVIEW);
    Show(TestAnimation());
    Press(List(), VK_SPACE);
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (IsPlaying(Preview()) && std::chrono::steady_clock::now() < limit) PumpMessages();
    EXPECT_FALSE(IsPlaying(Preview()));
    EXPECT_EQ(Selection(), kThirdImage);
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
TEST_F(PanesTest, AThousandFramesAreTimed) {
    Animation made(320, 240);
    for (int i = 0; i < 1000; ++i) {
        const auto at = static_cast<uint16_t>(i % 100);
        made.Control(1, 5, 0).Image({at, at, 200, 120, 8, false, false, i % 7 + 1});
    }
    const std::string path = File("thousand.gif");
    ASSERT_TRUE(WriteGifFile(*made.List(), path.c_str()));
    for (bool panes : {false, true}) {
        settings.preview = settings.filmstrip = panes;
        ApplyOptions(hMainWindow);
        auto timed = [&](const char* what, auto work) {
            using Milliseconds = std::chrono::duration<double, std::milli>;
            const auto start = std::chrono::steady_clock::now();
            work();
            const Milliseconds took = std::chrono::steady_clock::now() - start;
            Milliseconds longest{};
            for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
                const auto before = std::chrono::steady_clock::now();
                DispatchMessageW(&message);
                longest = std::max<Milliseconds>(longest, std::chrono::steady_clock::now() - before);
            }
            printf("1000 frames, panes %s: %s %.1f ms, then no message more than %.1f ms\n", panes ? "on" : "off", what,
                   took.count(), longest.count());
        };
        // Without the fixture's own look at every command, which would be timed, too.
        auto send = [](WPARAM command) { SendMessageW(hMainWindow, WM_COMMAND, command, 0); };
        auto select = [&](int line) {
            SelectLine(hMainWindow, line);
            send(MAKEWPARAM(IDC_BLOCK_LIST, LBN_SELCHANGE));
        };
        auto name = reinterpret_cast<LPARAM>(path.c_str());
        timed("opening", [&] { SendMessageW(hMainWindow, UM_OPENFILE, 0, name); });
        const uint32_t count = document.count;
        timed("selecting the last line", [&] { select(2000); });
        timed("scrolling to the top", [&] { SendMessageW(List(), LB_SETTOPINDEX, 0, 0), UpdateWindow(List()); });
        timed("selecting line 1000", [&] { select(1000); });
        timed("deleting", [&] { send(IDM_DELETE); });
        EXPECT_EQ(document.count, count - 1);
        timed("undoing", [&] { send(IDM_UNDO); });
        timed("settling", [&] { Settle(); });
        EXPECT_EQ(document.count, count);
        documentChanged = false;
    }
}

}  // namespace
