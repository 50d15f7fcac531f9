// Edits must give back every handle and byte that they take.
#include "gif/descriptor.h"
#include "resources/editor_ids.h"
#include "tests/gui/editor_test.h"

namespace {

// Long enough to be missed, in short lines: Wine keeps something of every line that it wraps.
const char kText[] =
    "A text of some length,\r\nsince what has been lost\r\nmust show among what\r\nis taken by the way.";

struct Usage {
    size_t gdiObjects, windows, heapBytes;
};

// Handles are counted by their lower halves where the system does not tell: it takes them for the whole.
Usage Measure() {
    constexpr UINT_PTR kLowerHalves = 0x10000;
    Usage usage = {GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS),
                   GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), 0};
    for (UINT_PTR half = usage.gdiObjects ? kLowerHalves : 1; half < kLowerHalves; ++half) {
        usage.gdiObjects += GetObjectType(reinterpret_cast<HGDIOBJ>(half)) != 0;
        usage.windows += IsWindow(reinterpret_cast<HWND>(half)) != 0;
    }
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(GetProcessHeap(), &entry))
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) usage.heapBytes += entry.cbData;
    return usage;
}

class EditorLeaks : public EditorTest {
protected:
    // Opens whatever the editor can open, and keeps the changes.
    void EditEachKind(int rounds) {
        auto click = [](int button) { return Then([=](HWND dialog) { ClickBox(dialog, button); }, IDOK); };
        for (int round = 0; round < rounds; ++round) {
            Edit(kSampleHeader, {click(IDC_COLOUR), ChooseCell(9)});
            Edit(kSampleImage, {Press(IDOK)});
            Edit(kSampleControl, {click(IDC_EYEDROPPER), ClickPixel(2, 2)});
            Edit(kSamplePlainText, {click(IDC_SECOND_EYEDROPPER), ClickPixel(2, 2)});
            Edit(kSampleComment, {Type(IDC_COMMENT_TEXT, kText, IDOK)});
            Edit(kSampleComment, {Type(IDC_COMMENT_TEXT, "a text", IDCANCEL)});
            Edit(kSampleLoop, {Press(IDOK)});
            Edit(kSampleApplication, {Press(IDOK)});
        }
    }
};

TEST_F(EditorLeaks, ManyEditsLeaveNothingBehind) {
    constexpr int kRounds = 24;
    Block control = At(kSampleControl);
    PutControlFields(&control, {kControlTransparent, 1, 0});
    Put(control);
    EditEachKind(4);
    const Usage before = Measure();
    EditEachKind(kRounds);
    const Usage after = Measure();
    // A handle or 64 bytes lost in each round would show; the system's own bookkeeping may move a little.
    EXPECT_LT(after.heapBytes, before.heapBytes + kRounds * 64);
    EXPECT_LT(after.gdiObjects, before.gdiObjects + kRounds);
    EXPECT_LT(after.windows, before.windows + kRounds);
}

}  // namespace
