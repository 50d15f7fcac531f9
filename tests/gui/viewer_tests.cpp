// What the viewer shows of a document, when it goes on, and whole viewings in its own full-screen window.
#include "windows/viewer/viewer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "tests/gui/animation.h"
#include "tests/gui/viewer_stage.h"
#include "windows/services/shell_objects.h"

namespace {

bool memoryIsExhausted;

}  // namespace

void* operator new(size_t bytes) {
    void* memory = memoryIsExhausted ? nullptr : malloc(bytes);
    return memory ? memory : throw std::bad_alloc();
}

namespace {

const BlockList* viewed;  // by the innermost viewing

// Its window, or null. Window managers do not always have the last one on top.
HWND FindViewer() {
    HWND window = nullptr;
    while ((window = FindWindowExW(nullptr, window, kViewerClass, nullptr)) != nullptr)
        if (StateOfViewer(window)->list == viewed) break;
    return window;
}

const ViewerState* FindState() {
    return FindViewer() ? StateOfViewer(FindViewer()) : nullptr;
}

bool HasPlayed() {
    const ViewerState* state = FindState();
    return state && state->nextIndex == state->list->count && pendingWait == 0;
}

bool CloseWhenPlayed() {
    HWND viewer = HasPlayed() ? FindViewer() : nullptr;
    return viewer && PostMessageW(viewer, WM_CHAR, VK_ESCAPE, 0);
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
        EXPECT_EQ(FindWindowW(kViewerClass, nullptr), nullptr);
        EXPECT_EQ(pendingWait, 0);
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
        const BlockList* outer = std::exchange(viewed, animation->List());
        RunViewer(owner_, animation->List());
        viewed = outer;
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

int32_t loopsLeft;  // when the last message was taken from the queue

LRESULT CALLBACK NoteLoops(int, WPARAM, LPARAM) {
    if (const ViewerState* state = FindState()) loopsLeft = state->loopsLeft;
    return 0;
}

}  // namespace

TEST(Viewer, SkipsAnImageWithoutPixels) {
    for (uint32_t disposal : {1u, 2u, 3u}) {
        Animation animation(20, 20);
        animation.Image({0, 0, 20, 20}).Control(disposal, 1).Image({5, 5, 10, 10}).Control(1, 0);
        animation.List()->blocks[3].data = nullptr;
        ViewerStage stage(animation.List(), 20, 20);
        Picture shown(20, 20, 0);
        shown.Put(animation.At(1).data, 0, 0, animation.At(0).palette, kNoPixel, false);
        EXPECT_EQ(stage.PlayToEnd(), 1);
        EXPECT_EQ(Difference(shown, stage.Look()), "") << disposal;
    }
}

// With images at places that are odd, and that reach beyond the screen.
TEST(Viewer, EnlargesByWholeFactorsWithoutBlurring) {
    constexpr int kWidth = 50, kHeight = 40;
    const struct {
        uint32_t disposal;
        int transparentIndex;
        bool interlaced;
    } cases[] = {{0, -1, false}, {0, -1, true}, {2, 3, false}, {2, -1, false}, {3, 3, true}, {3, -1, true}};
    for (const auto& [disposal, transparentIndex, interlaced] : cases) {
        Animation animation(41, 30);
        animation.Image({0, 0, 41, 30}).Control(disposal, 0, transparentIndex);
        animation.Image({5, 7, 12, 9, 8, interlaced, true}).Image({30, 20, 17, 15, 4, interlaced});
        animation.Image({3, 1, 8, 6, 1, interlaced});
        auto play = [](ViewerStage& stage) {
            stage.Expose(RDW_ERASE);
            stage.PlayToEnd();
            return stage.Look();
        };
        ViewerStage usual(animation.List(), kWidth, kHeight);
        const Picture small = play(usual);
        for (const auto& [dpi, factor] : {std::pair(144, 1), {192, 2}, {288, 3}}) {
            SCOPED_TRACE(testing::Message() << disposal << " " << transparentIndex << " " << interlaced << " " << dpi);
            // Beside the last whole pixel some are left over, which count for nothing.
            ViewerStage stage(animation.List(), kWidth * factor + factor - 1, kHeight * factor);
            stage.MoveToScreen(dpi);
            const Picture large = play(stage);
            Picture expected = large;
            for (int y = 0; y < kHeight * factor; ++y)
                for (int x = 0; x < kWidth * factor; ++x) expected.At(x, y) = small.At(x / factor, y / factor);
            EXPECT_EQ(Difference(expected, large), "");
        }
    }
}

TEST(Viewer, EnlargesTextWithTheImages) {
    auto draws = [](int dpi, int factor) {
        Animation animation(60, 40);
        animation.PlainText("H", {10, 6, 10, 1, 8, 8, 9, 9});
        animation.Control(0, 0, 9);
        ViewerStage stage(animation.List(), 60 * factor, 40 * factor);
        stage.MoveToScreen(dpi);
        stage.Expose(RDW_ERASE);
        stage.PlayToEnd();
        const Picture shown = stage.Look();
        RECT ink = {1000, 1000, 0, 0};
        for (LONG y = 0; y < shown.height; ++y)
            for (LONG x = 0; x < shown.width; ++x)
                if (shown.At(x, y) != shown.At(0, 0)) {
                    ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                           std::max(ink.bottom, y + 1)};
                }
        return ink;
    };
    const RECT usual = draws(96, 1), dense = draws(192, 2);
    ASSERT_LT(usual.left, usual.right);
    for (const auto& [once, twice] : {std::pair(usual.left, dense.left),
                                      {usual.top, dense.top},
                                      {usual.right, dense.right},
                                      {usual.bottom, dense.bottom}})
        EXPECT_NEAR(twice, 2 * once, 3);
}

TEST(Viewer, PlacesPaintsAndDisposesOfImages) {
    const struct {
        uint16_t screenWidth, screenHeight;
        ImageRequest image;
        int left, top;  // where it begins in a client area of 61 x 50
    } cases[] = {{41, 31, {5, 7, 10, 12}, 15, 17},
                 {100, 90, {10, 5, 70, 60, 4, true, true, 9}, -5, -10},
                 {10, 10, {0, 0, 100, 90, 6}, 45, 40},
                 {10, 10, {0, 0, 20, 3, 1, true, true, 7}, 25, 20},
                 {0, 0, {0, 0, 7, 6, 8, true}, 31, 25}};
    for (const auto& c : cases)
        for (uint32_t disposal : {1u, 2u, 3u, 5u})
            for (int transparent : {-1, 1}) {
                SCOPED_TRACE(testing::Message() << &c - cases << ", disposal " << disposal << ", " << transparent);
                Animation animation(c.screenWidth, c.screenHeight, disposal > 1);
                ImageRequest other = {c.image.left, c.image.top, c.image.width, c.image.height, 8, false, true, 3};
                animation.Control(1, 0).Image(other).Control(disposal, 1, transparent).Image(c.image).Image(other);
                ViewerStage stage(animation.List(), 61, 50);
                const COLORREF ground = disposal > 1 ? ColourRef(animation.Colour(kBackgroundIndex)) : RGB(0, 0, 0);
                const Picture nothing(61, 50, ground);
                Picture under = nothing;
                under.Put(animation.At(2).data, c.left, c.top, animation.At(2).palette, kNoPixel, false);
                Picture shown = under;
                shown.Put(animation.At(4).data, c.left, c.top, animation.At(c.image.hasOwnPalette ? 4 : 0).palette,
                          static_cast<uint32_t>(transparent), c.image.interlaced);
                for (int step = 0; step < 6; ++step) stage.Step();
                EXPECT_EQ(Difference(shown, stage.Look()), "");
                stage.Expose();
                EXPECT_EQ(Difference(shown, stage.Look()), "") << "exposed";
                stage.Step(), stage.Tick(), stage.Step();
                EXPECT_EQ(Difference(disposal == 2 ? nothing : disposal == 3 ? under : shown, stage.Look()), "");
                if (disposal != 3) continue;
                stage.Expose();  // paints it once more, which is not to be taken for the next image
                stage.Step(), stage.Step(), stage.Tick(), stage.Step();
                EXPECT_EQ(Difference(shown, stage.Look()), "") << "under the next image";
            }
}

TEST(Viewer, ControlsAndLoopsDecideHowItGoesOn) {
    static const ImageRequest kFirst = {0, 0, 9, 9}, kSecond = {1, 0, 9, 9}, kThird = {2, 0, 9, 9};
    // Of each image its left edge, what is waited for, and for what after a key was pressed; the loops that are left.
    const std::tuple<const char*, int32_t, void (*)(Animation&)> cases[] = {
        // A control stays in force until the next (kQuirkControlStaysInForce). A key ends only what waits for input.
        {"0:25>0 1:25>0 2:0>0 ", -1,
         [](Animation& all) { all.Control(3, 25, 7, true).Image(kFirst).Image(kSecond).Control(5, 0).Image(kThird); }},
        {"0:1>0 ", -1, [](Animation& all) { all.Control(1, 0, -1, true).Image(kFirst); }},
        {"0:5>5 ", -1, [](Animation& all) { all.Control(1, 5).Image(kFirst); }},
        // Repeats begin at the third block (kQuirkLoopStart) and are never without a delay.
        {"0:0>0 1:1>1 2:1>1 1:7>7 2:1>1 1:7>7 2:0>0 ", 0,
         [](Animation& all) { all.Image(kFirst).Loop(2).Image(kSecond).Control(0, 0).Image(kThird).Control(0, 7); }},
        {"1:2>2 1:2>2 ", 0, [](Animation& all) { all.Loop(1).Control(0, 2).Image(kSecond).Loop(9); }},
        {"", 32738, [](Animation& all) { all.Loop(0).Comment(); }},
    };
    for (const auto& [expected, loops, fill] : cases) {
        Animation animation(20, 20);
        fill(animation);
        ViewerStage stage(animation.List(), 30, 30);
        std::string trace;
        for (int message = 0; message < 60; ++message) {
            if (stage.Step() != WM_VIEWER_DELAY) continue;
            trace += std::to_string(stage.State().imageLeft) + ":" + std::to_string(pendingWait);
            SendMessageW(stage.Window(), WM_CHAR, ' ', 0);
            trace += '>' + std::to_string(pendingWait) + ' ';
            if (stage.State().delay == 0) continue;
            EXPECT_EQ(stage.Step(), 0u) << "the delay goes on whatever is pressed";
            stage.Tick();
            EXPECT_FALSE(KillTimer(stage.Window(), kDelayTimer));
        }
        EXPECT_EQ(trace, expected);
        EXPECT_EQ(stage.State().loopsLeft, loops);
    }
}

TEST(Viewer, AnImageThatLeftTheDocumentIsNotPaintedAgain) {
    Animation animation(40, 30);
    animation.Control(0, 5).Image({0, 0, 40, 30});
    ViewerStage stage(animation.List(), 61, 50);
    while (stage.Step()) {
    }  // until the delay
    DestroyBlockList(animation.List());
    RedrawWindow(stage.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    EXPECT_EQ(stage.Look().At(30, 25), stage.State().backgroundColour);
    EXPECT_EQ(pendingWait, 5);
    SendMessageW(stage.Window(), WM_COMMAND, IDCANCEL, 0);
    EXPECT_TRUE(!IsWindow(stage.Window()) && pendingWait == 0);
}

// The colours that stay in the document are those of kQuirkDrawingRecolours.
TEST(Viewer, PaintsTheLastImageAgainAsItWasWhateverFollowedIt) {
    for (bool interlaced : {false, true})
        for (bool hasOwnPalette : {false, true})
            for (int transparent : {-1, 1}) {
                SCOPED_TRACE(testing::Message() << interlaced << hasOwnPalette << ", " << transparent);
                Animation animation(41, 31);
                animation.Control(1, 0, transparent).Image({5, 7, 20, 4, 4, interlaced, hasOwnPalette, 9});
                animation.Control(1, 0, transparent < 0 ? 2 : -1).Comment();
                ViewerStage stage(animation.List(), 61, 50);
                stage.PlayToEnd();
                stage.Expose(RDW_ERASE);
                const Block owner = animation.At(hasOwnPalette ? 2 : 0);
                Picture shown(61, 50, ColourRef(animation.Colour(kBackgroundIndex)));
                shown.Put(animation.At(2).data, 15, 17, owner.palette, static_cast<uint32_t>(transparent), interlaced);
                EXPECT_EQ(Difference(shown, stage.Look()), "");
                RgbTriples left;
                GetImagePalette(ImageLock(animation.At(2).data), left);
                EXPECT_EQ(ColourRef(left[3]), ColourRef(owner.palette[3])) << "the colours in the document";
            }
}

// A copy of the document shares its pixels, as one that is kept for taking changes back would.
TEST(Viewer, GivesItsColoursToTheDocumentWithoutCopyingPixelsThatNobodyShares) {
    const Palette made = ManyColours(0), shown = ManyColours(5);
    auto colourOf = [](const Block& image) {
        RgbTriples colours = {};
        GetImagePalette(ImageLock(image.data), colours);
        return colours[1];
    };
    for (bool shared : {false, true}) {
        Animation animation(40, 30);
        animation.Image({0, 0, 20, 10});
        animation.List()->blocks[0].palette = shown;
        BlockList copy;
        for (const Block& block : animation.List()->All())
            if (shared) Append(&copy, block);
        const Block& image = animation.List()->blocks[1];
        const uint8_t* pixels = MemoryLock(image.data).Bytes();
        ViewerStage(animation.List(), 61, 50).PlayToEnd();
        EXPECT_EQ(MemoryLock(image.data).Bytes() != pixels, shared);
        EXPECT_EQ(colourOf(image), shown[1]);
        EXPECT_EQ(colourOf(shared ? copy.blocks[1] : image), (shared ? made : shown)[1]);
    }
}

TEST(Viewer, AnInterlacedImageIsShownAtOnceWhenItsViewerIsToBeClosed) {
    constexpr int kHigh = 20000;  // rows, a second each
    // What waits for the viewer: harmless keys and clicks, and among them something that closes it.
    const std::vector<std::pair<UINT, WPARAM>> cases[] = {{{WM_KEYDOWN, 'A'}, {WM_KEYDOWN, VK_ESCAPE}},
                                                          {{WM_CHAR, 'a'}, {WM_CHAR, VK_ESCAPE}, {WM_CHAR, 'b'}},
                                                          {{WM_RBUTTONUP, 0}, {WM_RBUTTONDOWN, 0}},
                                                          {{WM_LBUTTONDOWN, 0}, {WM_RBUTTONDBLCLK, 0}},
                                                          {{WM_SYSCOMMAND, SC_HOTKEY}, {WM_SYSCOMMAND, SC_CLOSE}},
                                                          {{WM_SYSKEYDOWN, VK_F3}, {WM_SYSKEYDOWN, VK_F4}},
                                                          {{WM_COMMAND, 13}, {WM_COMMAND, IDCANCEL}},
                                                          {{WM_KEYUP, VK_ESCAPE}, {WM_CLOSE, 0}}};
    for (const auto& waiting : cases)
        for (int transparent : {-1, 1}) {
            SCOPED_TRACE(testing::Message() << &waiting - cases << ", " << transparent);
            Animation animation(41, 31);
            animation.Control(1, 0, transparent).Image({0, 0, 1, kHigh, 8, true});
            ViewerStage stage(animation.List(), 61, 50);
            settings.interlaceDelay = UINT32_MAX;
            stage.Step();
            for (const auto& [message, parameter] : waiting)
                PostMessageW(stage.Window(), message, parameter, KF_ALTDOWN << 16);
            stage.Step();
            EXPECT_EQ(stage.State().currentImage, animation.At(2).data);
            for (MSG message; IsWindow(stage.Window()) && PeekMessageW(&message, stage.Window(), 0, 0, PM_REMOVE);) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
            EXPECT_FALSE(IsWindow(stage.Window())) << "what closes it got lost";
        }
}

TEST(Viewer, ATextThatMemoryIsTooShortForDoesNotHoldUpTheRest) {
    Animation animation(50, 40);
    animation.PlainText("longer than what needs no memory", {0, 0, 20, 3, 8, 16, 1, 2}).Comment();
    ViewerStage stage(animation.List(), 61, 50);
    memoryIsExhausted = true;
    const UINT step = stage.Step();
    memoryIsExhausted = false;
    EXPECT_EQ(step, WM_VIEWER_NEXT);
    stage.PlayToEnd();
    EXPECT_EQ(stage.State().nextIndex, animation.List()->count);
}

TEST_F(ViewerRunTest, PlaysOverTheWholeScreenUntilItsOwnerIsClosed) {
    Animation animation(200, 100);
    animation.Control(3, 2).Image({20, 10, 60, 50, 4, true, true, 9}).Control(1, 1).Image({0, 0, 200, 100});
    EXPECT_TRUE(View(&animation, [&] {
        if (!HasPlayed()) return false;
        RECT client;
        GetClientRect(FindViewer(), &client);
        Picture expected(client.right, client.bottom, ColourRef(animation.Colour(kBackgroundIndex)));
        expected.Put(animation.At(4).data, client.right / 2 - 100, client.bottom / 2 - 50, animation.At(0).palette,
                     kNoPixel, false);
        UpdateWindow(FindViewer());  // on a desktop it may be exposed late
        EXPECT_EQ(Difference(expected, Look(WindowDc(FindViewer()).Get(), client.right, client.bottom)), "");
        EXPECT_GE(client.right, GetSystemMetrics(SM_CXSCREEN) - 4);
        EXPECT_GE(client.bottom, GetSystemMetrics(SM_CYSCREEN) - 4);
        return GetWindow(FindViewer(), GW_OWNER) == owner_ && DestroyWindow(owner_);
    }));
    EXPECT_TRUE(TakeQuitMessage()) << "the owner's own loop ends too";
}

TEST_F(ViewerRunTest, AViewingInsideAnotherLeavesItAloneAndIsClosedWithIt) {
    Animation outer(50, 40), inner(30, 20);
    inner.Control(0, 1).Image({0, 0, 30, 20});
    EXPECT_TRUE(View(&outer, [&] {
        HWND first = HasPlayed() ? FindViewer() : nullptr;
        if (!first) return false;
        EXPECT_TRUE(View(&inner, CloseWhenPlayed));
        EXPECT_TRUE(IsWindow(first));
        EXPECT_EQ(StateOfViewer(first)->list, outer.List());
        return View(&inner, [=] { return HasPlayed() && PostMessageW(first, WM_CLOSE, 0, 0); });
    }));
}

TEST_F(ViewerRunTest, InputIsHeardWhileBlocksFollowWithoutADelay) {
    Animation animation(50, 40);
    animation.Loop(0).Comment().Comment().Comment();  // some 100,000 blocks to play
    HHOOK hook = SetWindowsHookExW(WH_GETMESSAGE, NoteLoops, nullptr, GetCurrentThreadId());
    ShowWindow(owner_, SW_SHOW);  // the keyboard is that of the thread whose window is in front
    for (DWORD flags : {DWORD{0}, DWORD{KEYEVENTF_KEYUP}}) keybd_event(VK_ESCAPE, 0, flags, 0);
    View(&animation, CloseWhenPlayed);
    UnhookWindowsHookEx(hook);
    EXPECT_GT(loopsLeft, 0);
}

// A left click does nothing: kQuirkClickCommand.
TEST_F(ViewerRunTest, OnlyEscapeAndTheRightButtonCloseIt) {
    Animation animation(120, 90);
    constexpr UINT kClosing[] = {WM_CHAR, WM_RBUTTONDOWN, WM_RBUTTONDBLCLK},
                   kHarmless[] = {WM_LBUTTONDOWN, WM_RBUTTONUP};
    for (UINT closing : kClosing)
        EXPECT_TRUE(View(&animation, [&] {
            for (UINT harmless : kHarmless) SendMessageW(FindViewer(), harmless, 0, 0);
            HWND viewer = HasPlayed() ? FindViewer() : nullptr;
            return viewer && PostMessageW(viewer, closing, VK_ESCAPE, 0);
        }));
}
