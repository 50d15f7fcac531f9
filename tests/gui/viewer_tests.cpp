// What the viewer shows of a document, when it goes on, and whole viewings in its own full-screen window.
#include "imaging/draw/viewer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "app/services/settings.h"
#include "app/services/shell_objects.h"
#include "tests/gui/animation.h"
#include "tests/gui/viewer_stage.h"

namespace {

constexpr int kClientWidth = 61, kClientHeight = 50;

// Where an image begins in the client area, along one axis.
int PlaceOf(int client, int image, int screen, int offset) {
    double centred = image < client ? std::floor((client - image) / 2.0) : 0;
    return static_cast<int>(centred + offset - std::floor((screen - image) / 2.0));
}

// Plays the document once and compares what is shown with the rules for single pixels. Every second image is exposed
// while it is shown, and every third once more when it has been disposed of.
void CheckPlaying(Animation* animation) {
    ViewerStage stage(animation->List(), kClientWidth, kClientHeight);
    const Block header = animation->At(0);
    const HeaderFields screen = GetHeaderFields(header);
    const COLORREF background = screen.packed & kHasPalette ? ColourRef(header.palette[kBackgroundIndex]) : 0;
    Picture shown(kClientWidth, kClientHeight, background);
    ControlFields control = {};
    for (uint32_t index = 1; stage.Step() == WM_VIEWER_NEXT && index < animation->List()->count; ++index) {
        const Block block = animation->At(index);
        if (block.kind == kControlBlock) control = GetControlFields(block);
        if (block.kind != kImageBlock) continue;
        const ImageFields image = GetImageFields(block);
        const int left = PlaceOf(kClientWidth, image.width, screen.screenWidth, image.left);
        const int top = PlaceOf(kClientHeight, image.height, screen.screenHeight, image.top);
        const Picture under = shown;
        auto putImage = [&] {
            shown.Put(block.data, left, top, image.packed & kHasPalette ? block.palette : header.palette,
                      control.packed & kControlTransparent ? control.transparentIndex : kNoPixel,
                      image.packed & kImageInterlaced);
        };
        putImage();
        if (index % 2) stage.Expose();
        ASSERT_EQ(Difference(shown, stage.Look()), "") << "block " << index << " shown";
        ASSERT_EQ(stage.Step(), WM_VIEWER_DELAY);
        if (control.delay > 0) stage.Tick();
        ASSERT_EQ(stage.Step(), WM_VIEWER_DISPOSE);
        const int disposal = control.packed >> 2 & 7;
        for (int y = top; y < top + image.height && (disposal == 2 || disposal == 3); ++y)
            for (int x = left; x < left + image.width; ++x)
                if (shown.Has(x, y)) shown.At(x, y) = disposal == 2 ? background : under.At(x, y);
        ASSERT_EQ(Difference(shown, stage.Look()), "") << "block " << index << " disposed of";
        if (index % 3 == 0) stage.Expose(), putImage();
    }
}

HWND FindViewer() {
    return FindWindowW(kViewerClass, nullptr);
}

bool HasPlayed() {
    return currentViewer && currentViewer->nextIndex == viewedList->count && pendingWait == 0;
}

bool CloseWhenPlayed() {
    return HasPlayed() && PostMessageW(FindViewer(), WM_CHAR, VK_ESCAPE, 0);
}

class ViewerRunTest : public testing::Test {
protected:
    void SetUp() override {
        if (!hInstance) hInstance = GetModuleHandleW(nullptr);
        settings.interlaceDelay = 0;
        owner_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 50, 50, nullptr, nullptr, hInstance, nullptr);
    }
    void TearDown() override {
        DestroyWindow(owner_);
        WNDCLASSW viewer;
        EXPECT_FALSE(GetClassInfoW(hInstance, kViewerClass, &viewer));
        EXPECT_TRUE(!FindViewer() && !currentViewer && !viewedList && pendingWait == 0);
        EXPECT_FALSE(TakeQuitMessage());
    }
    static BOOL TakeQuitMessage() {
        MSG message;
        return PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    }
    // A timer calls `act` over and over until it returns true. False when the viewing ended before.
    bool View(Animation* animation, std::function<bool()> act) {
        act_ = std::move(act);
        UINT_PTR timer = SetTimer(nullptr, 0, 10, OnTimer);
        RunViewer(owner_, animation->List());
        KillTimer(nullptr, timer);
        return !std::exchange(act_, nullptr);
    }
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
        auto act = std::exchange(act_, nullptr);  // it may run messages itself
        if (act && !act()) act_ = act;
    }
    inline static std::function<bool()> act_;
    HWND owner_ = nullptr;
};

// How many more GDI objects this process may create: counted by creating them, as not every system tells.
size_t CountFreeGdiObjects() {
    std::vector<HGDIOBJ> taken;
    while (HGDIOBJ brush = CreateSolidBrush(0)) taken.push_back(brush);
    for (HGDIOBJ brush : taken) DeleteObject(brush);
    return taken.size();
}

}  // namespace

TEST(Viewer, ComposesPixelByPixel) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        auto below = [&](unsigned limit) { return static_cast<uint16_t>(random() % limit); };
        auto screenWidth = below(80), screenHeight = below(60);
        Animation animation(screenWidth, screenHeight, below(8) != 0);
        for (int block = 0; block < 8; ++block) {
            if (below(2)) animation.Control(below(4) ? below(4) : below(8), below(3), below(2) ? below(16) : -1);
            const int depths[] = {1, 2, 4, 6, 8};
            animation.Image({below(50), below(40), below(70), below(below(3) ? 20 : 70), depths[below(5)],
                             below(2) != 0, below(2) != 0, 1 + below(50)});
            if (below(4) == 0) animation.Comment();
        }
        CheckPlaying(&animation);
    }
}

TEST(Viewer, ControlsAndLoopsDecideHowItGoesOn) {
    static const ImageRequest kFirst = {0, 0, 9, 9}, kSecond = {1, 0, 9, 9}, kThird = {2, 0, 9, 9};
    const struct {
        const char* trace;  // of each image: its left edge, what is waited for, and for what after a key was pressed
        int32_t loopsLeft;
        void (*fill)(Animation& document);
    } cases[] = {
        // A control stays in force until the next. A key ends only what waits for input.
        {"0:25>0 1:25>0 2:0>0 ", -1,
         [](Animation& all) { all.Control(3, 25, 7, true).Image(kFirst).Image(kSecond).Control(5, 0).Image(kThird); }},
        {"0:1>0 ", -1, [](Animation& all) { all.Control(1, 0, -1, true).Image(kFirst); }},
        {"0:5>5 ", -1, [](Animation& all) { all.Control(1, 5).Image(kFirst); }},
        // Repeats begin at the third block and are never without a delay.
        {"0:0>0 1:1>1 2:1>1 1:7>7 2:1>1 1:7>7 2:0>0 ", 0,
         [](Animation& all) { all.Image(kFirst).Loop(2).Image(kSecond).Control(0, 0).Image(kThird).Control(0, 7); }},
        {"1:2>2 1:2>2 ", 0, [](Animation& all) { all.Loop(1).Control(0, 2).Image(kSecond).Loop(9); }},
        {"", 32738, [](Animation& all) { all.Loop(0).Comment(); }},
    };
    for (const auto& c : cases) {
        Animation animation(20, 20);
        c.fill(animation);
        ViewerStage stage(animation.List(), 30, 30);
        std::string trace;
        for (int message = 0; message < 60; ++message) {
            if (stage.Step() != WM_VIEWER_DELAY) continue;
            trace += std::to_string(stage.State().imageLeft) + ":" + std::to_string(pendingWait);
            SendMessageW(stage.Window(), WM_CHAR, ' ', 0);
            trace += ">" + std::to_string(pendingWait) + " ";
            if (stage.State().delay == 0) continue;
            EXPECT_EQ(stage.Step(), 0u) << "the delay goes on whatever is pressed";
            stage.Tick();
            EXPECT_FALSE(KillTimer(stage.Window(), kDelayTimer));
        }
        EXPECT_EQ(trace, c.trace);
        EXPECT_EQ(stage.State().loopsLeft, c.loopsLeft);
    }
}

TEST(Viewer, AnImageThatLeftTheDocumentIsNotPaintedAgain) {
    Animation animation(40, 30);
    animation.Control(0, 5).Image({0, 0, 40, 30});
    ViewerStage stage(animation.List(), kClientWidth, kClientHeight);
    while (stage.Step()) {
    }  // until the delay
    DestroyBlockList(animation.List());
    RedrawWindow(stage.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    EXPECT_EQ(stage.Look().At(kClientWidth / 2, kClientHeight / 2), stage.State().backgroundColour);
    EXPECT_EQ(pendingWait, 5);
    SendMessageW(stage.Window(), WM_COMMAND, IDCANCEL, 0);
    EXPECT_TRUE(!IsWindow(stage.Window()) && pendingWait == 0);
}

TEST_F(ViewerRunTest, PlaysOverTheWholeScreenUntilItsOwnerIsClosed) {
    Animation animation(200, 100);
    animation.Control(1, 1).Image({0, 0, 200, 100}).Control(3, 2).Image({20, 10, 60, 50, 4, true, true, 9});
    EXPECT_TRUE(View(&animation, [&] {
        if (!HasPlayed()) return false;
        RECT client;
        GetClientRect(FindViewer(), &client);
        Picture expected(client.right, client.bottom, ColourRef(animation.Colour(kBackgroundIndex)));
        expected.Put(animation.At(2).data, client.right / 2 - 100, client.bottom / 2 - 50, animation.At(0).palette,
                     kNoPixel, false);
        EXPECT_EQ(Difference(expected, Look(WindowDc(FindViewer()).Get(), client.right, client.bottom)), "");
        EXPECT_GE(client.right, GetSystemMetrics(SM_CXSCREEN) - 4);
        EXPECT_GE(client.bottom, GetSystemMetrics(SM_CYSCREEN) - 4);
        return GetWindow(FindViewer(), GW_OWNER) == owner_ && DestroyWindow(owner_);
    }));
    EXPECT_TRUE(TakeQuitMessage()) << "the owner's own loop ends too";
}

TEST_F(ViewerRunTest, AViewingInsideAnotherLeavesItAlone) {
    Animation outer(50, 40), inner(30, 20);
    outer.Control(0, 50).Image({0, 0, 50, 40}).Image({0, 0, 20, 20});
    inner.Control(0, 1).Image({0, 0, 30, 20});
    bool nested = false;
    EXPECT_TRUE(View(&outer, [&] {
        if (nested || !currentViewer || pendingWait == 0) return nested && CloseWhenPlayed();
        const ViewerState* state = currentViewer;
        nested = View(&inner, CloseWhenPlayed);
        EXPECT_TRUE(nested && currentViewer == state && viewedList == outer.List());
        return false;
    }));
}

TEST_F(ViewerRunTest, ClosingTheOuterViewingClosesTheInner) {
    Animation outer(50, 40), inner(30, 20);
    EXPECT_TRUE(View(&outer, [&] {
        HWND first = HasPlayed() ? FindViewer() : nullptr;
        return first && View(&inner, [=] { return HasPlayed() && PostMessageW(first, WM_CLOSE, 0, 0); });
    }));
}

TEST_F(ViewerRunTest, InputIsHeardWhileBlocksFollowWithoutADelay) {
    Animation animation(50, 40);
    animation.Loop(0).Comment().Comment().Comment();  // some 100,000 blocks to play, while no timer is heard
    ShowWindow(owner_, SW_SHOW);                      // the keyboard is that of the thread whose window is in front
    for (DWORD flags : {DWORD{0}, DWORD{KEYEVENTF_KEYUP}}) keybd_event(VK_ESCAPE, 0, flags, 0);
    EXPECT_FALSE(View(&animation, CloseWhenPlayed)) << "Escape has to end it earlier";
}

TEST_F(ViewerRunTest, EveryWayToCloseItGivesEverythingBack) {
    Animation animation(120, 90);
    for (uint16_t frame = 0; frame < 100; ++frame)
        animation.Control(frame % 4, 0, frame % 3 ? 5 : -1).Image({3, 3, 90, 80});
    const UINT kHarmless[] = {WM_LBUTTONDOWN, WM_LBUTTONDBLCLK, WM_RBUTTONUP};
    const UINT kClosing[] = {WM_CHAR, WM_RBUTTONDOWN, WM_RBUTTONDBLCLK};
    size_t before = 0;
    for (UINT closing : kClosing) {
        EXPECT_TRUE(View(&animation, [&] {
            for (UINT harmless : kHarmless) SendMessageW(FindViewer(), harmless, 0, 0);
            return HasPlayed() && PostMessageW(FindViewer(), closing, VK_ESCAPE, 0);
        }));
        size_t free = CountFreeGdiObjects();
        EXPECT_GE(free + 8, before);
        before = free;
    }
}
