#include "gif/descriptor.h"
#include "windows/dialogs/block_editors.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/ids/editor_ids.h"

namespace {

bool ShowLoop(HWND dialog) {
    ShowNumber(dialog, IDC_LOOP_ITERATIONS, GetLoopIterations(*Edited<Block>(dialog)));
    return true;
}

int TakeLoop(HWND dialog) {
    PutLoopIterations(Edited<Block>(dialog), TakeNumber(dialog, IDC_LOOP_ITERATIONS));
    return 1;
}

constexpr DialogKind kLoopDialog = {
    .templateName = L"EditLoopBox",
    .helpKeyword = "KLMLoop",
    .show = ShowLoop,
    .take = TakeLoop,
};

}  // namespace

int EditLoop(HWND parent, Block* block) {
    return RunEditingDialog(parent, kLoopDialog, block);
}
