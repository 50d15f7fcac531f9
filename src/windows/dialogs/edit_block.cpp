#include "windows/dialogs/edit_block.h"

#include "editing/block_queries.h"
#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/block_editors.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/fields.h"
#include "windows/services/careful.h"
#include "windows/services/messages.h"

namespace {

// What there is nothing to edit in marks the document changed all the same.
constexpr int kQuirkUneditedCountsAsChanged = kBlockEdited;

struct BlockEditor {
    uint16_t kind;
    int (*edit)(HWND parent, Block* block);
};
constexpr BlockEditor kBlockEditors[] = {
    {kHeaderBlock, EditHeader},       {kImageBlock, EditImage},     {kControlBlock, EditControl},
    {kPlainTextBlock, EditPlainText}, {kCommentBlock, EditComment}, {kLoopBlock, EditLoop},
};

// Puts the edited copy back, also when it is still encoded alike: its name may have changed.
int Keep(HWND owner, BlockList* document, uint32_t index, const Block& edited, bool othersChanged) {
    bool differs = false;
    if (!StoreEdited(document, edited, index, &differs)) {
        if (index >= document->count) return kBlockInaccessible;
        TellOutOfMemory(owner);
        return kBlockUnchanged;
    }
    if (differs) return kBlockEdited;
    bool sameName = edited.name == document->blocks[index].name;
    if (sameName && !othersChanged && Careful(Care::kUnchangedStaysUnchanged)) return kBlockUnchanged;
    return PutBlock(document, edited, index) ? kBlockEdited : kBlockInaccessible;
}

int EditCopy(HWND mainWindow, BlockList* document, uint32_t index, Block copy, const BlockEditor& editor) {
    const bool usedGlobal = ImagesUseGlobalPalette(*document);
    if (!editor.edit(mainWindow, &copy)) return kBlockUnchanged;
    const bool othersChanged = ImagesUseGlobalPalette(*document) != usedGlobal;  // they can be given that one thing
    return Keep(mainWindow, document, index, copy, othersChanged);
}

// An edit would keep of a text what the block has of it.
bool MayBeEdited(HWND owner, const Block& block) {
    if (!Careful(Care::kUnchangedStaysUnchanged) || !IsTextCut(block)) return true;
    MessageBox(owner, LoadStr(IDS_TEXT_TOO_LONG));
    return false;
}

void ShowApplicationBlock(HWND owner, const Block& block) {
    const auto* descriptor = reinterpret_cast<const char*>(block.descriptor);
    const std::string text =
        FormatStr(IDS_APPLICATION_BLOCK, descriptor + kIdentifierOffset, descriptor + kAuthenticationOffset);
    MessageBox(owner, text.c_str());
}

// What becomes of a block whose kind has no dialog.
int RefuseBlock(HWND owner, const Block& block) {
    const int unedited = Careful(Care::kRefusalChangesNothing) ? kBlockUnchanged : kQuirkUneditedCountsAsChanged;
    switch (block.kind) {
        case kEmptyBlock: return MessageBox(owner, LoadStr(IDS_NOT_EDITABLE)), unedited;
        case kApplicationBlock: return ShowApplicationBlock(owner, block), kBlockUnchanged;
        case kUnknownBlock: return MessageBox(owner, LoadStr(IDS_NOT_EDITABLE)), kBlockUnchanged;
        default: return unedited;
    }
}

}  // namespace

int EditBlock(HWND mainWindow, BlockList* document, int index) {
    Block block;
    auto place = static_cast<uint32_t>(index);
    if (!GetBlock(*document, &block, place)) return kBlockInaccessible;
    if (!MayBeEdited(mainWindow, block)) return kBlockUnchanged;
    for (const BlockEditor& editor : kBlockEditors)
        if (editor.kind == block.kind) return EditCopy(mainWindow, document, place, block, editor);
    return RefuseBlock(mainWindow, block);
}
