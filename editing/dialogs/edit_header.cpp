#include "app/services/messages.h"
#include "editing/block_queries.h"
#include "editing/dialogs/block_editors.h"
#include "editing/dialogs/dialog_frame.h"
#include "editing/dialogs/edited_block.h"
#include "editing/dialogs/fields.h"
#include "editing/dialogs/palette_buttons.h"
#include "gif/descriptor.h"
#include "platform/prompts.h"
#include "resources/editor_ids.h"
#include "resources/string_ids.h"

namespace {

uint8_t Background(const Block& block) {
    return GetHeaderFields(block).backgroundIndex;
}

void SetBackground(Block* block, uint8_t index) {
    HeaderFields header = GetHeaderFields(*block);
    header.backgroundIndex = index;
    PutHeaderFields(block, header);
}

uint32_t ColourCount(const Block& block) {
    return static_cast<uint32_t>(ColoursOfPacked(GetHeaderFields(block).packed));
}

constexpr PaletteButtons kButtons = {{{IDC_COLOUR, Background, SetBackground}}, ColourCount, {}, nullptr};

bool ShowHeader(HWND dialog) {
    HeaderFields header = GetHeaderFields(*Edited<Block>());
    ShowNumber(dialog, IDC_HEADER_WIDTH, header.screenWidth);
    ShowNumber(dialog, IDC_HEADER_DEPTH, header.screenHeight);
    ShowCheck(dialog, IDC_HEADER_GLOBAL_PALETTE, header.packed & kHasPalette);
    ShowColourCount(dialog, IDC_HEADER_COLOURS, header.packed);
    ShowCheck(dialog, IDC_HEADER_SORTED, header.packed & kHeaderSorted);
    ShowPaletteButtons(dialog, kButtons);
    return true;
}

INT_PTR TakeHeader(HWND dialog) {
    HeaderFields header = GetHeaderFields(*Edited<Block>());
    header.packed = TakeFlag(dialog, IDC_HEADER_SORTED, header.packed, kHeaderSorted);
    header.packed = TakeFlag(dialog, IDC_HEADER_GLOBAL_PALETTE, header.packed, kHasPalette);
    header.screenWidth = TakeNumber(dialog, IDC_HEADER_WIDTH);
    header.screenHeight = TakeNumber(dialog, IDC_HEADER_DEPTH);
    PutHeaderFields(Edited<Block>(), header);
    return 1;
}

// Whether the document can do without its global palette, now that images which used it were given a copy of their own
// (at once, whatever becomes of the dialog).
bool CanDropGlobalPalette(HWND dialog, const Block& header) {
    if (!header.owner || !ImagesUseGlobalPalette(*header.owner)) return true;
    if (YesnoBox(dialog, LoadStr(IDS_GLOBAL_PALETTE_IN_USE)) == IDNO) return false;
    if (CopyGlobalPaletteToImages(header.owner, header.palette)) return true;
    MessageBox(dialog, LoadStr(IDS_BLOCK_ACCESS));
    return false;
}

void OnGlobalPalette(HWND dialog) {
    const Block& header = *Edited<Block>();
    if (TakeCheck(dialog, IDC_HEADER_GLOBAL_PALETTE)) {
        if (CanDropGlobalPalette(dialog, header)) ShowCheck(dialog, IDC_HEADER_GLOBAL_PALETTE, false);
        return;
    }
    if (!HasColours(header)) MessageBox(dialog, LoadStr(IDS_NO_GLOBAL_COLOURS));
    ShowCheck(dialog, IDC_HEADER_GLOBAL_PALETTE, true);
}

bool OnHeaderCommand(HWND dialog, int id, int notification) {
    if (id != IDC_HEADER_GLOBAL_PALETTE || notification != BN_CLICKED) return false;
    OnGlobalPalette(dialog);
    return true;
}

constexpr DialogKind kHeaderDialog = {L"EditHeaderBox", "KLMHeader",     ShowHeader, TakeHeader, 0,
                                      &kButtons,        OnHeaderCommand, nullptr};

}  // namespace

int EditHeader(HWND parent, Block* block) {
    return static_cast<int>(RunEditingDialog(parent, kHeaderDialog, block));
}
