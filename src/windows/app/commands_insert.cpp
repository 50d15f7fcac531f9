// The Insert command.
#include <string>

#include "gif/block_list.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/insert_box.h"
#include "windows/services/chosen_files.h"
#include "windows/services/file_dialogs.h"
#include "windows/services/messages.h"

namespace {

constexpr size_t kMaxInsertedFiles = 260;

// Chosen images mark the document changed, also when the first one can't be inserted.
constexpr bool kQuirkChosenImagesMarkChanged = true;

void MarkInserted() {
    documentChanged = true;
    selectedLine = kNoSelectedLine;
}

// Inserts a block behind `*place`, which moves on to it, and shows the document with line `shown` selected.
bool InsertAndShow(HWND window, int* place, int shown, uint16_t kind, const std::string& path = {}) {
    if (!InsertBlock(window, &document, place, kind, path)) return false;
    MarkInserted();  // first: showing it may fail for want of memory
    FillBlockListView(window, &document);
    SelectLine(window, shown);
    RevealLine(window, *place);  // the new one, while the selected one can be seen with it
    RevealLine(window, shown);
    return true;
}

void InsertImages(HWND window, int line) {
    std::string names;
    if (!OpenImagesDialog(window, &names)) return;
    if (kQuirkChosenImagesMarkChanged) MarkInserted();
    int place = line;
    for (const std::string& path : ChosenPaths(names, kMaxInsertedFiles))
        if (!InsertAndShow(window, &place, line, kImageBlock, path)) break;
}

void InsertOther(HWND window, int line, uint16_t kind) {
    int place = line;
    InsertAndShow(window, &place, line, kind);
}

void InsertLoop(HWND window) {
    if (HasLoopBlock(document)) return MessageBox(window, LoadStr(IDS_SECOND_LOOP));
    SelectLine(window, 0);
    InsertOther(window, 0, kLoopBlock);
}

}  // namespace

void OnInsert(HWND window) {
    paletteChoiceForInsert = kAskForPalette;
    int line = SelectedLine(window);
    if (line == kNoLine) return MessageBox(window, LoadStr(IDS_NO_SELECTION));
    int kind = ChooseInsertKind(window, &document);
    if (kind == 0) return;
    if (kind == kLoopBlock) return InsertLoop(window);
    if (kind == kImageBlock) return InsertImages(window, line);
    InsertOther(window, line, static_cast<uint16_t>(kind));
}
