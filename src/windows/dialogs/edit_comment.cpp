#include "windows/dialogs/block_editors.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/text_field.h"
#include "windows/ids/editor_ids.h"

namespace {

bool ShowComment(HWND dialog) {
    return ShowBlockText(dialog, IDC_COMMENT_TEXT, *Edited<Block>(dialog));
}

int TakeComment(HWND dialog) {
    TakeBlockText(dialog, IDC_COMMENT_TEXT, Edited<Block>(dialog));
    return 1;
}

constexpr DialogKind kCommentDialog = {
    .templateName = L"EditCommentBox",
    .helpKeyword = "KLMComment",
    .show = ShowComment,
    .take = TakeComment,
};

}  // namespace

int EditComment(HWND parent, Block* block) {
    return RunEditingDialog(parent, kCommentDialog, block);
}
