#include "windows/dialogs/edit_block.h"

#include "gif/descriptor.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/block_editors.h"
#include "windows/dialogs/fields.h"
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

int EditCopy(HWND mainWindow, BlockList* document, uint32_t index, Block copy, const BlockEditor& editor) {
    if (!editor.edit(mainWindow, &copy)) return kBlockUnchanged;
    return PutBlock(document, copy, index) ? kBlockEdited : kBlockInaccessible;
}

void ShowApplicationBlock(HWND owner, const Block& block) {
    const auto* descriptor = reinterpret_cast<const char*>(block.descriptor);
    const std::string text =
        FormatStr(IDS_APPLICATION_BLOCK, descriptor + kIdentifierOffset, descriptor + kAuthenticationOffset);
    MessageBox(owner, text.c_str());
}

// What becomes of a block whose kind has no dialog.
int RefuseBlock(HWND owner, const Block& block) {
    switch (block.kind) {
        case kEmptyBlock: return MessageBox(owner, LoadStr(IDS_NOT_EDITABLE)), kQuirkUneditedCountsAsChanged;
        case kApplicationBlock: return ShowApplicationBlock(owner, block), kBlockUnchanged;
        case kUnknownBlock: return MessageBox(owner, LoadStr(IDS_NOT_EDITABLE)), kBlockUnchanged;
        default: return kQuirkUneditedCountsAsChanged;
    }
}

}  // namespace

int EditBlock(HWND mainWindow, BlockList* document, int index) {
    Block block;
    auto place = static_cast<uint32_t>(index);
    if (!GetBlock(*document, &block, place)) return kBlockInaccessible;
    for (const BlockEditor& editor : kBlockEditors)
        if (editor.kind == block.kind) return EditCopy(mainWindow, document, place, block, editor);
    return RefuseBlock(mainWindow, block);
}
