// The Insert command.
#include <string>

#include "app/block_list_view.h"
#include "app/commands.h"
#include "app/services/chosen_files.h"
#include "app/services/file_dialogs.h"
#include "app/services/messages.h"
#include "app/shell_state.h"
#include "editing/dialogs/insert_box.h"
#include "editing/palette_match.h"
#include "gif/block_list.h"
#include "gif/first_image.h"
#include "platform/prompts.h"
#include "platform/wide_text.h"
#include "resources/string_ids.h"

namespace {

constexpr size_t kMaxInsertedFiles = 260;

void MarkInserted() {
    documentChanged = true;
    selectedLine = kNoSelectedLine;
}

// Inserts a block behind `*place`, which moves on to it, and shows the document with line `shown` selected.
bool InsertAndShow(HWND window, int* place, int shown, uint16_t kind, const char* path) {
    if (!InsertBlock(window, &document, place, kind, nullptr, path)) return false;
    MarkInserted();  // first: showing it may fail for want of memory
    FillBlockListView(window, &document);
    SelectLine(window, shown);
    RevealLine(window, *place);  // the new one, while the selected one can be seen with it
    RevealLine(window, shown);
    return true;
}

// Says so when it is the file that can't be inserted. All else has been told, or was what the user wanted.
void TellIfUnreadable(HWND window, const std::string& path) {
    int depth;
    if (OwnedMemory(ReadFirstImage(window, path.c_str(), &depth))) return;
    const std::string name = path.substr(path.find_last_of('\\') + 1);  // all of it without a folder
    MessageBox(window, WideFromUtf8(name) + L": " + WideFrom1252(LoadStr(IDS_OPEN_FAILED)));
}

bool InsertImage(HWND window, int* place, int shown, const std::string& path) {
    if (InsertAndShow(window, place, shown, kImageBlock, path.c_str())) return true;
    TellIfUnreadable(window, path);
    return false;
}

void InsertImages(HWND window, int line) {
    std::string names;
    if (!OpenImagesDialog(window, &names)) return;
    MarkInserted();  // also when the first image can't be inserted
    int place = line;
    for (const std::string& path : ChosenPaths(names, kMaxInsertedFiles))
        if (!InsertImage(window, &place, line, path)) break;
}

void InsertOther(HWND window, int line, uint16_t kind) {
    int place = line;
    InsertAndShow(window, &place, line, kind, nullptr);
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
