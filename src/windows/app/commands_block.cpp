// Commands on the selected block, and the viewer.
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/app/document_commands.h"
#include "windows/app/document_history.h"
#include "windows/app/screen_reach.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/edit_block.h"
#include "windows/services/messages.h"
#include "windows/viewer/viewer.h"

namespace {

// Whether the line is of an image that is cut off at the screen's edge, also in the file that a save would write.
bool ReachesBeyond(int line) {
    const auto index = static_cast<uint32_t>(line);
    return !ScreenFollowsImages() && index < document.count && ReachesBeyondScreen(document, document.blocks[index]);
}

}  // namespace

int SelectedBlock(HWND window) {
    const int line = SelectedLine(window);
    return line != kNoLine && static_cast<uint32_t>(line) < document.count ? line : kNoLine;
}

void ShowChangedDocument(HWND window, int line) {
    documentChanged = true;  // first: showing it may fail for want of memory
    FillBlockListView(window, &document);
    SelectLine(window, line);
}

void OnView(HWND window) {
    RunViewer(window, &document);
}

void OnEdit(HWND window) {
    int line = SelectedLine(window);
    if (line == kNoLine) return MessageBox(window, LoadStr(IDS_NO_SELECTION));
    RecordedStep step(IDS_STEP_EDIT);
    step.Concerns(line, 1);
    const bool reachedBeyond = ReachesBeyond(line);
    int result = EditBlock(window, &document, line);
    if (result == kBlockEdited) ShowChangedDocument(window, line);
    if (!reachedBeyond && ReachesBeyond(line)) TellBeyondScreen(window, document);
    if (result == kBlockInaccessible) MessageBox(window, LoadStr(kQuirkMissingString));
}

void OnDelete(HWND window) {
    int line = SelectedLine(window);
    if (line == kNoLine) return MessageBox(window, LoadStr(IDS_NO_SELECTION));
    RecordedStep step(IDS_STEP_DELETE);
    step.Concerns(line, 1);
    if (DeleteBlock(window, &document, &line)) ShowChangedDocument(window, line);
}
