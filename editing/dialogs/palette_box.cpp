// The editor's palette question about an imported image.
#include "editing/block_queries.h"
#include "editing/dialogs/dialog_frame.h"
#include "editing/dialogs/edited_block.h"
#include "editing/dialogs/fields.h"
#include "editing/palette_match.h"
#include "resources/insert_ids.h"

static_assert(IDC_PALETTE_REMAP == kPaletteRemap && IDC_PALETTE_DITHER == kPaletteDither && IDCANCEL == kPaletteCancel,
              "the dialog ends with the number of the chosen control");

namespace {

bool HasTwoColours(const Block& image) {
    int bitCount = 0;
    return GetImageInfo(image.data, nullptr, nullptr, &bitCount, nullptr) && bitCount == 1;
}

// Whether the document has colours that an image could be fitted to.
bool HasTarget(const Block& image) {
    Block header;
    return image.owner && GetHeader(*image.owner, &header) && HasColours(header);
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
    int choice = TakeCheck(dialog, IDC_PALETTE_REMAP) ? kPaletteRemap : kPaletteDither;
    paletteChoiceForInsert = TakeCheck(dialog, IDC_PALETTE_SUBSEQUENT) ? choice : kAskForPalette;
    return choice;
}

constexpr DialogKind kPaletteBox = {L"PaletteNoMatchBox", "KLMInsert", ShowChoices, TakeChoice, kPaletteCancel};

}  // namespace

int RunPaletteDialog(WindowHandle owner, const Block& image) {
    Block subject = image;
    int choice = RunEditingDialog(static_cast<HWND>(owner), kPaletteBox, &subject);
    return choice ? choice : kPaletteCancel;  // a dialog that can't be shown agrees to nothing
}
