#include "editing/block_queries.h"
#include "gif/descriptor.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/block_editors.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/dialogs/palette_buttons.h"
#include "windows/dialogs/scoped_value.h"
#include "windows/ids/editor_ids.h"
#include "windows/services/careful.h"
#include "windows/services/messages.h"

namespace {

// Images are given their copy of the global palette at once, and keep it after Cancel.
constexpr bool kQuirkPaletteCopiedAtOnce = true;

bool copyOnOk;  // otherwise: that the user agreed to it, in the dialog that runs

uint32_t ColourCount(const Block& block) {
    return static_cast<uint32_t>(ColoursOfPacked(GetHeaderFields(block).packed));
}

constexpr PaletteButtons kButtons = {
    {ColourButtonFor<GetHeaderFields, PutHeaderFields, &HeaderFields::backgroundIndex>(IDC_COLOUR, 0)},
    ColourCount,
    nullptr};

bool ShowHeader(HWND dialog) {
    HeaderFields header = GetHeaderFields(*Edited<Block>(dialog));
    ShowNumber(dialog, IDC_HEADER_WIDTH, header.screenWidth);
    ShowNumber(dialog, IDC_HEADER_HEIGHT, header.screenHeight);
    ShowCheck(dialog, IDC_HEADER_GLOBAL_PALETTE, header.packed & kHasPalette);
    ShowColourCount(dialog, IDC_HEADER_COLOURS, header.packed);
    ShowCheck(dialog, IDC_HEADER_SORTED, header.packed & kQuirkHeaderSorted);
    ShowPaletteButtons(dialog, kButtons);
    return true;
}

int TakeHeader(HWND dialog) {
    HeaderFields header = GetHeaderFields(*Edited<Block>(dialog));
    header.packed = TakeFlag(dialog, IDC_HEADER_SORTED, header.packed, kQuirkHeaderSorted);
    header.packed = TakeFlag(dialog, IDC_HEADER_GLOBAL_PALETTE, header.packed, kHasPalette);
    header.screenWidth = TakeNumber(dialog, IDC_HEADER_WIDTH);
    header.screenHeight = TakeNumber(dialog, IDC_HEADER_HEIGHT);
    PutHeaderFields(Edited<Block>(dialog), header);
    if (copyOnOk) CopyGlobalPaletteToImages(Edited<Block>(dialog)->owner, Edited<Block>(dialog)->palette);
    return 1;
}

// Whether the document can do without its global palette, now that images which used it were given a copy of their own
// or will be.
bool CanDropGlobalPalette(HWND dialog, const Block& header) {
    if (!header.owner || !ImagesUseGlobalPalette(*header.owner)) return true;
    if (ImagesAreBoundToGlobalPalette(*header.owner)) return MessageBox(dialog, LoadStr(IDS_PALETTE_BOUND)), false;
    if (YesnoBox(dialog, LoadStr(IDS_GLOBAL_PALETTE_IN_USE)) == IDNO) return false;
    copyOnOk = !kQuirkPaletteCopiedAtOnce || Careful(Care::kCancelUndoesAll);
    if (!copyOnOk) CopyGlobalPaletteToImages(header.owner, header.palette);
    return true;
}

bool OnHeaderClick(HWND dialog, int id) {
    if (id != IDC_HEADER_GLOBAL_PALETTE) return false;
    const Block& header = *Edited<Block>(dialog);
    if (TakeCheck(dialog, IDC_HEADER_GLOBAL_PALETTE)) {
        if (CanDropGlobalPalette(dialog, header)) ShowCheck(dialog, IDC_HEADER_GLOBAL_PALETTE, false);
        return true;
    }
    if (!HasColours(header)) MessageBox(dialog, LoadStr(IDS_NO_GLOBAL_COLOURS));
    copyOnOk = false;
    ShowCheck(dialog, IDC_HEADER_GLOBAL_PALETTE, true);
    return true;
}

constexpr DialogKind kHeaderDialog = {
    .templateName = L"EditHeaderBox",
    .helpKeyword = "KLMHeader",
    .show = ShowHeader,
    .take = TakeHeader,
    .buttons = &kButtons,
    .onClick = OnHeaderClick,
};

}  // namespace

int EditHeader(HWND parent, Block* block) {
    ScopedValue<bool> nothingAgreed(&copyOnOk, false);
    return RunEditingDialog(parent, kHeaderDialog, block);
}
