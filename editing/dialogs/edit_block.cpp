#include "editing/dialogs/edit_block.h"

#include <cstdio>

#include "app/services/messages.h"
#include "editing/dialogs/block_editors.h"
#include "gif/descriptor.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"

namespace {

struct BlockEditor {
    uint16_t kind;
    int (*edit)(HWND parent, Block* block);
};
constexpr BlockEditor kBlockEditors[] = {
    {kHeaderBlock, EditHeader},       {kImageBlock, EditImage},     {kControlBlock, EditControl},
    {kPlainTextBlock, EditPlainText}, {kCommentBlock, EditComment}, {kLoopBlock, EditLoop},
};

// Releases the texts that `other` has in place of those of `block`.
void ReleaseReplaced(const Block& block, const Block& other) {
    if (block.data != other.data) FreeMemory(block.data);
    if (block.name != other.name) FreeMemory(block.name);
}

int EditCopy(HWND mainWindow, BlockList* document, uint32_t index, const Block& original, const BlockEditor& editor) {
    Block copy = original;
    bool keep = editor.edit(mainWindow, &copy) != 0;
    bool written = keep && PutBlock(document, copy, index);
    written ? ReleaseReplaced(original, copy) : ReleaseReplaced(copy, original);
    return !keep ? kBlockUnchanged : written ? kBlockEdited : kBlockInaccessible;
}

// The format comes from the string table, whose text and arguments are fixed together.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

void ShowApplicationBlock(HWND owner, const Block& block) {
    char text[kPathBytes];
    auto* descriptor = reinterpret_cast<const char*>(block.descriptor);
    snprintf(text, sizeof text, LoadStr(IDS_APPLICATION_BLOCK), descriptor + kIdentifierOffset,
             descriptor + kAuthenticationOffset);
    MessageBox(owner, text);
}

#pragma GCC diagnostic pop

// What becomes of a block whose kind has no dialog.
int RefuseBlock(HWND owner, const Block& block) {
    switch (block.kind) {
        case kEmptyBlock: return MessageBox(owner, LoadStr(IDS_NOT_EDITABLE)), kBlockEdited;
        case kApplicationBlock: return ShowApplicationBlock(owner, block), kBlockUnchanged;
        case kUnknownBlock: return MessageBox(owner, LoadStr(IDS_NOT_EDITABLE)), kBlockUnchanged;
        default: return kBlockEdited;
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
