// Whole viewings, in the program's own full-screen window.
#include "imaging/draw/viewer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "app/services/shell_objects.h"
#include "platform/prompts.h"
#include "platform/windows_api.h"
#include "resources/string_ids.h"
#include "tests/gui/animation.h"
#include "tests/gui/dialog_answers.h"
#include "tests/gui/viewer_stage.h"

#include <psapi.h>  // after windows_api.h

namespace {

HWND FindViewer() {
    return FindWindowW(kViewerClass, nullptr);
}

bool HasPlayed() {
    return currentViewer && currentViewer->nextIndex == viewedList->count && pendingWait == 0;
}

bool CloseWhenPlayed() {
    return HasPlayed() && PostMessageW(FindViewer(), WM_CHAR, VK_ESCAPE, 0);
}

// What a timer does over and over while a viewing runs the messages, until it returns true.
struct Poll {
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR timer, DWORD) {
        auto* poll = reinterpret_cast<Poll*>(timer);
        if (poll->done || std::exchange(poll->busy, true)) return;
        poll->done = poll->act();
        poll->busy = false;
    }
    std::function<bool()> act;
    bool done = false, busy = false;
};

class ViewerRunTest : public testing::Test {
protected:
    void SetUp() override {
        if (!hInstance) hInstance = GetModuleHandleW(nullptr);
        owner_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 50, 50, nullptr, nullptr, hInstance, nullptr);
    }
    void TearDown() override {
        DestroyWindow(owner_);
        WNDCLASSW viewer;
        EXPECT_FALSE(GetClassInfoW(hInstance, kViewerClass, &viewer));
        EXPECT_EQ(FindViewer(), nullptr);
        EXPECT_TRUE(!currentViewer && !viewedList && pendingWait == 0);
        MSG message;
        EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    }
    // `act` has to end the viewing.
    void View(Animation* animation, std::function<bool()> act) {
        Poll poll = {std::move(act)};
        SetTimer(owner_, reinterpret_cast<UINT_PTR>(&poll), 10, Poll::OnTimer);
        RunViewer(owner_, animation->List());
        KillTimer(owner_, reinterpret_cast<UINT_PTR>(&poll));
        EXPECT_TRUE(poll.done);
    }
    HWND owner_ = nullptr;
};

// Numbers of GDI objects in use, seen from outside: the numbers that new ones get.
size_t FirstFreeGdiNumbers() {
    HGDIOBJ made[64];
    size_t highest = 0;
    for (HGDIOBJ& object : made) {
        object = CreateSolidBrush(0);
        highest = std::max(highest, static_cast<size_t>(LOWORD(reinterpret_cast<uintptr_t>(object))));
    }
    for (HGDIOBJ object : made) DeleteObject(object);
    return highest;
}

size_t PrivateBytes() {
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

int32_t loopsLeftAtTheEnd;

LRESULT CALLBACK NoteTheEnd(HWND viewer, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DESTROY) loopsLeftAtTheEnd = StateOfViewer(viewer)->loopsLeft;
    return ViewerProc(viewer, message, wParam, lParam);
}

// The keyboard's Escape goes to the window in front.
LRESULT CALLBACK PressEscapeWhenAsked(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP) {
        SetWindowLongPtrW(FindViewer(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(NoteTheEnd));
        for (DWORD flags : {DWORD{0}, DWORD{KEYEVENTF_KEYUP}}) keybd_event(VK_ESCAPE, 0, flags, 0);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

TEST_F(ViewerRunTest, PlaysOverTheWholeScreenUntilItIsClosed) {
    Animation animation(200, 100);
    animation.Control(1, 1).Image({0, 0, 200, 100}).Control(3, 2).Image({20, 10, 60, 50, 4, true, true, 9});
    Picture shown(0, 0);
    View(&animation, [&] {
        if (!HasPlayed()) return false;
        HWND viewer = FindViewer();
        RECT client;
        GetClientRect(viewer, &client);
        HDC dc = GetDC(viewer);
        shown = Look(dc, client.right, client.bottom);
        ReleaseDC(viewer, dc);
        EXPECT_EQ(GetWindow(viewer, GW_OWNER), owner_);
        return PostMessageW(viewer, WM_RBUTTONDOWN, 0, 0) != FALSE;
    });
    Picture expected(shown.width, shown.height, ColourRef(animation.Colour(kBackgroundIndex)));
    expected.Put(animation.At(2).data, shown.width / 2 - 100, shown.height / 2 - 50, animation.At(0).palette, kNoPixel,
                 false);
    EXPECT_EQ(Difference(expected, shown), "");
    EXPECT_GE(shown.width, GetSystemMetrics(SM_CXSCREEN) - 4);
    EXPECT_GE(shown.height, GetSystemMetrics(SM_CYSCREEN) - 4);
}

TEST_F(ViewerRunTest, TellsThatTheHeaderIsMissing) {
    BlockList list = {};
    ASSERT_TRUE(CreateBlockList(&list));
    DialogAnswers answers;
    answers.Press(IDOK);
    RunViewer(owner_, &list);
    EXPECT_EQ(answers.Texts(), std::vector<std::string>{LoadStr(IDS_MISSING)});
    DestroyBlockList(&list);
}

TEST_F(ViewerRunTest, AViewingInsideAnotherLeavesItAlone) {
    Animation outer(50, 40), inner(30, 20);
    outer.Control(0, 50).Image({0, 0, 50, 40}).Image({0, 0, 20, 20});
    inner.Control(0, 1).Image({0, 0, 30, 20});
    bool nested = false;
    View(&outer, [&] {
        if (nested || !currentViewer || pendingWait == 0) return nested && CloseWhenPlayed();
        const ViewerState* state = currentViewer;
        View(&inner, CloseWhenPlayed);
        EXPECT_EQ(currentViewer, state);
        EXPECT_EQ(viewedList, outer.List());
        nested = true;
        return false;
    });
}

TEST_F(ViewerRunTest, ClosingTheOuterViewingClosesTheInner) {
    Animation outer(50, 40), inner(30, 20);
    outer.Image({0, 0, 50, 40});
    inner.Image({0, 0, 30, 20});
    View(&outer, [&] {
        HWND first = HasPlayed() ? FindViewer() : nullptr;
        if (first) View(&inner, [=] { return HasPlayed() && PostMessageW(first, WM_CLOSE, 0, 0); });
        return first != nullptr;
    });
}

TEST_F(ViewerRunTest, AnOwnerThatIsClosedStillReachesItsOwnLoop) {
    Animation animation(50, 40);
    animation.Image({0, 0, 50, 40});
    View(&animation, [&] { return HasPlayed() && DestroyWindow(owner_); });
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, UINT{WM_QUIT});
}

TEST_F(ViewerRunTest, InputIsHeardWhileBlocksFollowWithoutADelay) {
    Animation animation(50, 40);
    animation.Loop(0).Comment().Comment().Comment();  // some 100,000 blocks to play
    loopsLeftAtTheEnd = 0;
    SetWindowLongPtrW(owner_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(PressEscapeWhenAsked));
    PostMessageW(owner_, WM_APP, 0, 0);
    RunViewer(owner_, animation.List());
    EXPECT_GT(loopsLeftAtTheEnd, 0);
}

TEST_F(ViewerRunTest, NothingGrowsOverManyFrames) {
    InstantReveal instantReveal;
    Animation animation(120, 90);
    for (uint16_t frame = 0; frame < 100; ++frame) {
        animation.Control(frame % 4, 0, frame % 3 ? 5 : -1);
        animation.Image(
            {static_cast<uint16_t>(frame % 20), 3, 90, 80, frame % 2 ? 8 : 4, frame == 7, frame % 5 == 0, frame});
    }
    animation.PlainText("text", {0, 0, 10, 2, 8, 16, 3, 4});
    View(&animation, CloseWhenPlayed);
    const size_t gdiBefore = FirstFreeGdiNumbers(), memoryBefore = PrivateBytes();
    for (int round = 0; round < 5; ++round) View(&animation, CloseWhenPlayed);
    EXPECT_LE(FirstFreeGdiNumbers(), gdiBefore + 8);
    EXPECT_LE(PrivateBytes(), memoryBefore + 1024 * 1024);
}
