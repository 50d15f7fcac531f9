// The editor's palette question about an imported image.
#include "editing/block_queries.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/document_operations.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/ids/insert_ids.h"

static_assert(IDC_PALETTE_REMAP == kPaletteRemap && IDC_PALETTE_DITHER == kPaletteDither && IDCANCEL == kPaletteCancel,
              "the dialog ends with the number of the chosen control");

namespace {

// Where the document has no colours, neither choice can be made; the one that is marked counts all the same.
constexpr bool kQuirkUnofferedChoiceCounts = true;

bool HasTwoColours(const Block& image) {
    std::optional<ImageInfo> info = GetImageInfo(image.data);
    return info && info->bitCount == 1;
}

// Whether the document has colours that an image could be fitted to.
bool HasTarget(const Block& image) {
    const Block* header = image.owner ? FindHeader(*image.owner) : nullptr;
    return header && HasColours(*header);
}

bool ShowChoices(HWND dialog) {
    const Block& image = *Edited<const Block>(dialog);
    bool target = HasTarget(image);
    bool twoColours = HasTwoColours(image);  // nothing to dither
    EnableControl(dialog, IDC_PALETTE_REMAP, target);
    EnableControl(dialog, IDC_PALETTE_DITHER, target && !twoColours);
    CheckRadioButton(dialog, IDC_PALETTE_REMAP, IDC_PALETTE_DITHER,
                     twoColours ? IDC_PALETTE_REMAP : IDC_PALETTE_DITHER);
    ShowCheck(dialog, IDC_PALETTE_SUBSEQUENT, true);
    return true;
}

int TakeChoice(HWND dialog) {
    if (!kQuirkUnofferedChoiceCounts && !HasTarget(*Edited<const Block>(dialog))) return kPaletteCancel;
    int choice = TakeCheck(dialog, IDC_PALETTE_REMAP) ? kPaletteRemap : kPaletteDither;
    paletteChoiceForInsert = TakeCheck(dialog, IDC_PALETTE_SUBSEQUENT) ? choice : kAskForPalette;
    return choice;
}

constexpr DialogKind kPaletteBox = {
    .templateName = L"PaletteNoMatchBox",
    .helpKeyword = "KLMInsert",
    .show = ShowChoices,
    .take = TakeChoice,
    .cancelResult = kPaletteCancel,
};

}  // namespace

int RunPaletteDialog(HWND owner, const Block& image) {
    Block subject = image;
    int choice = RunEditingDialog(owner, kPaletteBox, &subject);
    return choice ? choice : kPaletteCancel;  // a dialog that can't be shown agrees to nothing
}
