#include "windows/dialogs/insert_box.h"

#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/ids/insert_ids.h"

namespace {

struct KindButton {
    int id;
    BlockKind kind;
};

constexpr KindButton kButtons[] = {
    {IDC_INSERT_IMAGE, kImageBlock},          {IDC_INSERT_CONTROL, kControlBlock}, {IDC_INSERT_COMMENT, kCommentBlock},
    {IDC_INSERT_PLAIN_TEXT, kPlainTextBlock}, {IDC_INSERT_LOOP, kLoopBlock},
};

// A plain text needs colours of the global palette.
bool ShowKinds(HWND dialog) {
    EnableControl(dialog, IDC_INSERT_PLAIN_TEXT, FindGlobalPalette(*Edited<BlockList>(dialog)).depth > 0);
    return true;
}

bool OnKind(HWND dialog, int id) {
    for (const KindButton& button : kButtons)
        if (button.id == id) return EndDialog(dialog, button.kind);
    return false;
}

constexpr DialogKind kInsertBox = {
    .templateName = L"InsertBox",
    .show = ShowKinds,
    .onClick = OnKind,
};

}  // namespace

int ChooseInsertKind(HWND mainWindow, BlockList* document) {
    return RunEditingDialog(mainWindow, kInsertBox, document);
}
