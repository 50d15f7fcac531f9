// Commands on the selected block, and the viewer.
#include "app/block_list_view.h"
#include "app/commands.h"
#include "app/services/messages.h"
#include "app/shell_state.h"
#include "editing/dialogs/document_operations.h"
#include "editing/dialogs/edit_block.h"
#include "imaging/draw/viewer.h"
#include "resources/strings.h"
#include "resources/string_ids.h"

namespace {

void ShowChangedDocument(HWND window, int line) {
    documentChanged = true;  // first: showing it may fail for want of memory
    FillBlockListView(window, &document);
    SelectLine(window, line);
}

}  // namespace

void OnView(HWND window) {
    RunViewer(window, &document);
}

void OnEdit(HWND window) {
    int line = SelectedLine(window);
    if (line == kNoLine) return MessageBox(window, LoadStr(IDS_NO_SELECTION));
    int result = EditBlock(window, &document, line);
    if (result == kBlockEdited) ShowChangedDocument(window, line);
    if (result == kBlockInaccessible) MessageBox(window, LoadStr(IDS_MISSING));
}

void OnDelete(HWND window) {
    int line = SelectedLine(window);
    if (line == kNoLine) return MessageBox(window, LoadStr(IDS_NO_SELECTION));
    if (DeleteBlock(window, &document, &line)) ShowChangedDocument(window, line);
}
