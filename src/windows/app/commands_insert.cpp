// The Insert command.
#include <algorithm>
#include <string>
#include <vector>

#include "editing/palette_match.h"
#include "gif/block_list.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/app/document_commands.h"
#include "windows/app/document_history.h"
#include "windows/app/screen_reach.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/insert_box.h"
#include "windows/services/careful.h"
#include "windows/services/chosen_files.h"
#include "windows/services/file_dialogs.h"
#include "windows/services/messages.h"

namespace {

constexpr size_t kMaxInsertedFiles = 260;
constexpr size_t kMostNames = 10;  // of files, in a message

// Chosen images mark the document changed, also when the first one can't be inserted.
constexpr bool kQuirkChosenImagesMarkChanged = true;

void MarkInserted() {
    documentChanged = true;
    selectedLine = kNoSelectedLine;
}

// Shows the document with the new block at `place`, and line `shown` selected.
void ShowInserted(HWND window, int place, int shown) {
    MarkInserted();  // first: showing it may fail for want of memory
    FillBlockListView(window, &document);
    SelectLine(window, shown);
    RevealLine(window, place);  // the new one, while the selected one can be seen with it
    RevealLine(window, shown);
}

// Inserts a block behind `*place`, which moves on to it, and shows it.
bool InsertAndShow(HWND window, int* place, int shown, uint16_t kind, const std::string& path = {}) {
    if (!InsertBlock(window, &document, place, kind, path)) return false;
    ShowInserted(window, *place, shown);
    return true;
}

// Whether it is the file's fault that there is no image, and not the user's wish.
bool IsBad(Failure failure) {
    return failure != Failure::kCancelled && failure != Failure::kStopped && failure != Failure::kNoBlock;
}

std::wstring NameAlone(const std::string& path) {
    return WideFromUtf8(path.substr(path.find_last_of('\\') + 1));
}

void TellBadFiles(HWND window, const std::vector<std::string>& paths) {
    std::wstring text = L"No image could be read from:";
    const size_t named = std::min(paths.size(), kMostNames);
    for (size_t i = 0; i < named; ++i) text += L"\n" + NameAlone(paths[i]);
    if (paths.size() > named) text += L"\nand " + std::to_wstring(paths.size() - named) + L" more";
    MessageBox(window, text);
}

// Inserts the images that can be read, up to one that the user does not want, and names the others at the end.
void InsertGoodImages(HWND window, int* place, int shown, const std::vector<std::string>& paths) {
    std::vector<std::string> bad;
    for (const std::string& path : paths) {
        UserAnswers answers(window, path);
        const Result<std::vector<Block>> blocks = ImportImage(&document, path, answers);
        if (blocks && InsertBlocks(&document, place, *blocks)) {
            ShowInserted(window, *place, shown);
        } else if (blocks || IsBad(blocks.Why())) {
            bad.push_back(path);
        } else {
            break;
        }
    }
    if (!bad.empty()) TellBadFiles(window, bad);
}

// Says so when one of the blocks behind line `before` up to line `last` is an image that is cut off in the saved file.
void WarnBeyondScreen(HWND window, int before, int last) {
    if (ScreenFollowsImages()) return;
    for (int line = before + 1; line <= last; ++line)
        if (ReachesBeyondScreen(document, document.blocks[static_cast<uint32_t>(line)]))
            return TellBeyondScreen(window, document);
}

void InsertPaths(HWND window, int line, const std::vector<std::string>& paths) {
    int place = line;
    if (Careful(Care::kGoesOnPastBadImages) && paths.size() > 1) {
        InsertGoodImages(window, &place, line, paths);
    } else {
        for (const std::string& path : paths)
            if (!InsertAndShow(window, &place, line, kImageBlock, path)) break;
    }
    WarnBeyondScreen(window, line, place);
}

void InsertImages(HWND window, int line, ListedKinds kinds) {
    std::string names;
    if (!OpenImagesDialog(window, kinds, &names)) return;
    if (kQuirkChosenImagesMarkChanged && !Careful(Care::kRefusalChangesNothing)) MarkInserted();
    InsertPaths(window, line, ChosenPaths(names, kMaxInsertedFiles));
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

// One step of the history, whatever comes of it. `kinds` is what the dialog for images lists.
void InsertKind(HWND window, int line, int kind, ListedKinds kinds) {
    RecordedStep step(IDS_STEP_INSERT);
    const uint32_t count = document.count;
    if (kind == kLoopBlock)
        InsertLoop(window);
    else if (kind == kImageBlock)
        InsertImages(window, line, kinds);
    else
        InsertOther(window, line, static_cast<uint16_t>(kind));
    step.Concerns(kind == kLoopBlock ? 1 : line + 1, document.count - count);
}

}  // namespace

void OnInsert(HWND window) {
    paletteChoiceForInsert = kAskForPalette;
    int line = SelectedLine(window);
    if (line == kNoLine) return MessageBox(window, LoadStr(IDS_NO_SELECTION));
    const int kind = ChooseInsertKind(window, &document);
    if (kind) InsertKind(window, line, kind, ListedKinds::kUsual);
}

void OnInsertPictures(HWND window) {
    paletteChoiceForInsert = kAskForPalette;
    const int line = SelectedLine(window);
    if (line == kNoLine) return MessageBox(window, LoadStr(IDS_NO_SELECTION));
    InsertKind(window, line, kImageBlock, ListedKinds::kPictures);
}

void InsertImageFiles(HWND window, int line, const std::vector<std::string>& paths) {
    paletteChoiceForInsert = kAskForPalette;
    RecordedStep step(IDS_STEP_INSERT);
    const uint32_t count = document.count;
    InsertPaths(window, line, paths);
    step.Concerns(line + 1, document.count - count);
}
