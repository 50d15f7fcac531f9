// Edits must give back every handle and byte that they take.
#include "editing/dialogs/edit_block.h"
#include "gif/descriptor.h"
#include "resources/editor_ids.h"
#include "tests/gui/editor_test.h"

namespace {

using EditorLeaks = EditorTest;

// Handles in use of the kind `known` (GR_GDIOBJECTS or GR_USEROBJECTS). Where the system does not say, they are
// counted: it takes the lower halves of handles for the whole.
template <typename IsHandle>
size_t CountHandles(DWORD known, IsHandle isHandle) {
    constexpr UINT_PTR kLowerHalves = 0x10000;
    size_t count = GetGuiResources(GetCurrentProcess(), known);
    if (count != 0) return count;
    for (UINT_PTR half = 1; half < kLowerHalves; ++half)
        if (isHandle(half)) ++count;
    return count;
}

struct Usage {
    size_t gdiObjects, windows, heapBytes;
};

Usage Measure() {
    Usage usage = {};
    usage.gdiObjects =
        CountHandles(GR_GDIOBJECTS, [](UINT_PTR half) { return GetObjectType(reinterpret_cast<HGDIOBJ>(half)) != 0; });
    usage.windows =
        CountHandles(GR_USEROBJECTS, [](UINT_PTR half) { return IsWindow(reinterpret_cast<HWND>(half)) != 0; });
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(GetProcessHeap(), &entry))
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) usage.heapBytes += entry.cbData;
    return usage;
}

// Opens whatever the editor can open, and keeps the changes.
void EditEachKindOnce(SampleDocument& document) {
    auto clickThenOk = [](int button) {
        return [button](HWND dialog) {
            Click(dialog, button);
            PressButton(dialog, IDOK);
        };
    };
    Edit(document, kSampleHeader, {clickThenOk(IDC_COLOUR), ChooseCell(9)});
    Edit(document, kSampleImage, {Press(IDOK)});
    Edit(document, kSampleControl, {clickThenOk(IDC_EYEDROPPER), ClickPixel(2, 2)});
    Edit(document, kSamplePlainText, {clickThenOk(IDC_SECOND_EYEDROPPER), ClickPixel(2, 2)});
    Edit(document, kSampleComment, {Type(IDC_COMMENT_TEXT, "a text", IDOK)});
    Edit(document, kSampleComment, {Type(IDC_COMMENT_TEXT, "another text", IDCANCEL)});
    Edit(document, kSampleLoop, {Press(IDOK)});
    Edit(document, kSampleApplication, {Press(IDOK)});
}

TEST_F(EditorLeaks, FiveHundredEditsLeaveNothingBehind) {
    constexpr int kEditsPerRound = 8, kWarmUpRounds = 4, kRounds = 500 / kEditsPerRound + 1;
    SampleDocument document;
    Block control = document.At(kSampleControl);
    PutControlFields(&control, {kControlTransparent, 1, 0});
    document.Put(control);

    for (int round = 0; round < kWarmUpRounds; ++round) EditEachKindOnce(document);
    Usage before = Measure();
    for (int round = 0; round < kRounds; ++round) EditEachKindOnce(document);
    Usage after = Measure();

    // A handle or 64 bytes lost in each round would show; the system's own bookkeeping may move a little.
    EXPECT_LT(after.gdiObjects, before.gdiObjects + kRounds);
    EXPECT_LT(after.windows, before.windows + kRounds);
    EXPECT_LT(after.heapBytes, before.heapBytes + kRounds * 64);
}

}  // namespace
