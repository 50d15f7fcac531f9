#include "gif/descriptor.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/block_editors.h"
#include "windows/dialogs/borrowed_palette.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/dialogs/palette_buttons.h"
#include "windows/ids/editor_ids.h"
#include "windows/services/messages.h"

namespace {

constexpr unsigned kDisposals = 4;  // the codes that have a name; 4 to 7 show as no selection

const Block* FindImage(const Block& block) {
    const Block* image = FindNextImage(*block.owner, block.position);
    return image && image->data ? image : nullptr;
}

constexpr PaletteButtons kButtons = {
    {ColourButtonFor<GetControlFields, PutControlFields, &ControlFields::transparentIndex>(IDC_COLOUR, IDC_EYEDROPPER)},
    BorrowedColourCount,
    FindImage};

bool IsTransparent(const Block& block) {
    return (GetControlFields(block).packed & kControlTransparent) != 0;
}

void ShowTransparency(HWND dialog) {
    const Block& block = *Edited<Block>(dialog);
    bool transparent = IsTransparent(block);
    ShowCheck(dialog, IDC_CONTROL_TRANSPARENT, transparent);
    EnableControl(dialog, IDC_COLOUR, transparent);
    EnableEyedroppers(dialog, kButtons, transparent && FindImage(block));
}

void ShowDisposal(HWND dialog, uint8_t packed) {
    HWND list = GetDlgItem(dialog, IDC_CONTROL_DISPOSAL);
    for (unsigned i = 0; i < kDisposals; ++i) {
        std::wstring name = WideFrom1252(LoadStr(IDS_DISPOSAL_FIRST + i));
        SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
    }
    auto disposal = static_cast<unsigned>((packed & kControlDisposal) >> kControlDisposalShift);
    SendMessageW(list, CB_SETCURSEL, disposal < kDisposals ? disposal : static_cast<WPARAM>(CB_ERR), 0);
}

bool ShowControl(HWND dialog) {
    ControlFields control = GetControlFields(*Edited<Block>(dialog));
    ShowTransparency(dialog);
    ShowCheck(dialog, IDC_CONTROL_USER_INPUT, control.packed & kControlUserInput);
    ShowPaletteButtons(dialog, kButtons);
    ShowNumber(dialog, IDC_CONTROL_DELAY, control.delay);
    ShowDisposal(dialog, control.packed);
    return true;
}

int TakeControl(HWND dialog) {
    ControlFields control = GetControlFields(*Edited<Block>(dialog));
    control.packed = TakeFlag(dialog, IDC_CONTROL_TRANSPARENT, control.packed, kControlTransparent);
    control.packed = TakeFlag(dialog, IDC_CONTROL_USER_INPUT, control.packed, kControlUserInput);
    control.delay = TakeNumber(dialog, IDC_CONTROL_DELAY);
    LRESULT disposal = SendDlgItemMessageW(dialog, IDC_CONTROL_DISPOSAL, CB_GETCURSEL, 0, 0);
    if (disposal != CB_ERR)
        control.packed = static_cast<uint8_t>((control.packed & ~kControlDisposal) | disposal << kControlDisposalShift);
    PutControlFields(Edited<Block>(dialog), control);
    return 1;
}

bool OnControlClick(HWND dialog, int id) {
    if (id != IDC_CONTROL_TRANSPARENT) return false;
    ControlFields control = GetControlFields(*Edited<Block>(dialog));
    control.packed ^= kControlTransparent;
    PutControlFields(Edited<Block>(dialog), control);
    ShowTransparency(dialog);
    return true;
}

constexpr DialogKind kControlDialog = {
    .templateName = L"EditControlBox",
    .helpKeyword = "KLMControl",
    .show = ShowControl,
    .take = TakeControl,
    .buttons = &kButtons,
    .onClick = OnControlClick,
};

}  // namespace

int EditControl(HWND parent, Block* block) {
    BorrowedPalette palette(block);
    if (palette) return RunEditingDialog(parent, kControlDialog, block);
    MessageBox(parent, LoadStr(IDS_NO_PALETTE_FOR_CONTROL));
    return 0;
}
