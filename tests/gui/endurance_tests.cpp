// What the program takes from the system, it gives back.
#include "tests/gui/editor_test.h"
#include "tests/gui/free_objects.h"
#include "windows/ids/wizard_ids.h"
#include "windows/viewer/viewer_state.h"

namespace {

// Bytes in use, and how many more GDI objects and menus or windows this process may create.
std::vector<size_t> Measure() {
    size_t bytes = 0;
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(GetProcessHeap(), &entry)) bytes += entry.wFlags & PROCESS_HEAP_ENTRY_BUSY ? entry.cbData : 0;
    return {bytes, FreeGdiObjects(), FreeUserObjects()};
}

using EnduranceTest = EditorTest;

TEST_F(EnduranceTest, NothingIsLeftBehind) {
    constexpr int kRounds = 30;
    // Long enough to be missed, in short lines: Wine keeps something of every line that it wraps.
    const char text[] = "A text of some length,\r\nsince what has been lost\r\nmust show among the rest.";
    auto watch = [](HWND viewer) {
        MSG message;
        while (StateOfViewer(viewer)->nextIndex <= kSampleSecondImage + 1 && GetMessageW(&message, nullptr, 0, 0) > 0)
            DispatchMessageW(&message);
        PostMessageW(viewer, WM_CHAR, VK_ESCAPE, 0);
    };
    std::vector<size_t> before;
    for (int round = -3; round < kRounds; ++round) {
        if (round == 0) before = Measure();
        Edit(kSampleHeader, {Press(IDOK, {{IDC_COLOUR}}), ChooseCell(9, 0)});
        Edit(kSampleControl, {Press(IDOK, {{IDC_CONTROL_TRANSPARENT}, {IDC_CONTROL_DISPOSAL, "Previous image"}})});
        Edit(kSamplePlainText, {Press(IDOK, {{IDC_SECOND_EYEDROPPER}}), ClickPixel(2, 2, RGB(2, 4, 6))});
        for (int button : {IDOK, IDCANCEL}) Edit(kSampleComment, {Press(button, {{IDC_COMMENT_TEXT, text}})});
        for (int block : {kSampleImage, kSampleLoop}) Edit(block, {Press(IDOK)});
        Run(IDM_VIEW, {watch});
        Open(MakeGif("big.gif", 400, 300));
        Run(IDM_WIZARD, {See({IDC_WIZARD_NEXT}, "Next", IDCANCEL)});
        Run(IDM_ABOUT, {Press(IDOK)});
        TearDown();
        SetUp();
    }
    const std::vector<size_t> after = Measure();
    // A handle or 16 bytes lost in each round would show; the system's own bookkeeping may move a little.
    EXPECT_LT(after[0], before[0] + kRounds * 16);
    EXPECT_GT(after[1] + kRounds, before[1]);
    EXPECT_GT(after[2] + kRounds, before[2]);
}

}  // namespace
