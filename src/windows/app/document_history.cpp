#include "windows/app/document_history.h"

#include <algorithm>

#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/app/block_list_view.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/fields.h"
#include "windows/services/careful.h"
#include "windows/services/settings.h"

namespace {

History history;
unsigned documentNumber;  // counts the documents, to tell them apart
bool isRecording;

std::string KindName(uint16_t kind) {
    return LoadStr(IDS_KIND_FIRST + std::min<unsigned>(kind, kUnknownBlock));
}

// "comment", "3 images", "2 blocks".
std::string DescribeBlocks(std::span<const Block> blocks) {
    if (blocks.size() == 1) return KindName(blocks[0].kind);
    auto isImage = [](const Block& block) { return block.kind == kImageBlock; };
    const bool allImages = !blocks.empty() && std::ranges::all_of(blocks, isImage);
    return FormatStr(allImages ? IDS_IMAGE_COUNT : IDS_BLOCK_COUNT, static_cast<unsigned>(blocks.size()));
}

// The line to select after a step back or forth: the first of the blocks that came, or else that of the block that was
// changed. Where blocks only went, it is the one that a deletion leaves selected, or that the insertion taken back
// stood behind.
int LineToSelect(const ChangedPlace& changed, bool forth) {
    uint32_t line = changed.at;
    if (changed.put > changed.taken) line += changed.taken;
    if (changed.put < changed.taken) line += changed.put;
    if (changed.put < changed.taken && !forth && line > 0) --line;
    return static_cast<int>(std::min(line, std::max(document.count, 1u) - 1));
}

void ShowStep(HWND window, const ChangedPlace& changed, bool forth) {
    // Classic: a document that was changed asks before it goes, whatever became of the change.
    documentChanged = !Careful(Care::kUndoneIsUnchanged) || !history.IsSaved();  // first: showing may fail
    const int line = LineToSelect(changed, forth);
    const auto last = static_cast<int>(std::min(changed.at + changed.put, document.count)) - 1;
    FillBlockListView(window, &document);
    SelectLine(window, line);
    RevealLine(window, std::max(last, line));
    RevealLine(window, line);
}

}  // namespace

RecordedStep::RecordedStep(unsigned verb)
    : verb_(verb),
      name_(FormatStr(verb, std::string(LoadStr(IDS_SOME_BLOCKS)).c_str())),
      isOutermost_(!isRecording),
      isReady_(isOutermost_ && CopyBlockList(document, &before_)),
      document_(documentNumber) {
    isRecording = true;
}

RecordedStep::~RecordedStep() {
    if (!isOutermost_) return;
    isRecording = false;
    if (document_ != documentNumber || !isReady_) {  // nobody knows what the document was before
        history.Forget();
        return;
    }
    history.LimitTo(uint64_t{settings.undoMemory} << 20);
    history.Record(name_, before_, document);
}

void RecordedStep::Concerns(int first, uint32_t count) {
    const auto index = std::min(static_cast<uint32_t>(std::max(first, 0)), document.count);
    const std::span<const Block> blocks = document.All().subspan(index, std::min(count, document.count - index));
    if (!blocks.empty()) name_ = FormatStr(verb_, DescribeBlocks(blocks).c_str());
}

void StartHistory(bool isSaved) {
    ++documentNumber;
    history.Clear();
    if (!isSaved) history.Forget();
}

void MarkDocumentSaved() {
    history.MarkSaved();
}

const std::string* UndoName() {
    return history.UndoName();
}

const std::string* RedoName() {
    return history.RedoName();
}

void OnUndo(HWND window) {
    ChangedPlace changed;
    if (isRecording || !UndoName()) return;
    history.Undo(&document, &changed) ? ShowStep(window, changed, false) : TellOutOfMemory(window);
}

void OnRedo(HWND window) {
    ChangedPlace changed;
    if (isRecording || !RedoName()) return;
    history.Redo(&document, &changed) ? ShowStep(window, changed, true) : TellOutOfMemory(window);
}

const History& DocumentHistory() {
    return history;
}
