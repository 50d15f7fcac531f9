#include "editing/block_queries.h"
#include "gif/descriptor.h"
#include "platform/wide_text_win32.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/block_editors.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/ids/editor_ids.h"
#include "windows/services/careful.h"
#include "windows/services/messages.h"

namespace {

// The dialog has no such field, so that what it reads there, an empty text, becomes the image's name.
constexpr int kQuirkImageNameField = 799;

bool ShowImage(HWND dialog) {
    const Block& block = *Edited<Block>(dialog);
    ImageFields image = GetImageFields(block);
    ShowNumber(dialog, IDC_IMAGE_WIDTH, image.width);
    ShowNumber(dialog, IDC_IMAGE_HEIGHT, image.height);
    ShowNumber(dialog, IDC_IMAGE_LEFT, image.left);
    ShowNumber(dialog, IDC_IMAGE_TOP, image.top);
    ShowCheck(dialog, IDC_IMAGE_LOCAL_PALETTE, image.packed & kHasPalette);
    ShowColourCount(dialog, IDC_IMAGE_COLOURS, image.packed);
    bool hasGlobalPalette = block.owner && FindGlobalPalette(*block.owner).depth > 0;
    EnableControl(dialog, IDC_IMAGE_LOCAL_PALETTE, hasGlobalPalette);
    ShowCheck(dialog, IDC_IMAGE_INTERLACED, image.packed & kImageInterlaced);
    EnableControl(dialog, IDC_IMAGE_INTERLACED,
                  static_cast<bool>(block.data));  // its rows can't be put in another order
    return true;
}

void TakeName(HWND dialog, Block* block) {
    wchar_t name[kNameBytes];
    UINT units = GetDlgItemTextW(dialog, kQuirkImageNameField, name, static_cast<int>(kNameBytes));
    if (!SetBlockName(Ansi1252FromWide({name, units}).c_str(), block)) MessageBox(dialog, LoadStr(IDS_OUT_OF_MEMORY));
}

int TakeImage(HWND dialog) {
    ImageFields image = GetImageFields(*Edited<Block>(dialog));
    image.left = TakeNumber(dialog, IDC_IMAGE_LEFT);
    image.top = TakeNumber(dialog, IDC_IMAGE_TOP);
    image.packed = TakeFlag(dialog, IDC_IMAGE_LOCAL_PALETTE, image.packed, kHasPalette);
    image.packed = TakeFlag(dialog, IDC_IMAGE_INTERLACED, image.packed, kImageInterlaced);
    PutImageFields(Edited<Block>(dialog), image);
    if (!Careful(Care::kImageKeepsName)) TakeName(dialog, Edited<Block>(dialog));
    return 1;
}

constexpr DialogKind kImageDialog = {
    .templateName = L"EditImageBox",
    .helpKeyword = "KLMImage",
    .show = ShowImage,
    .take = TakeImage,
};

}  // namespace

int EditImage(HWND parent, Block* block) {
    return RunEditingDialog(parent, kImageDialog, block);
}
