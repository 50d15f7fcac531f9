#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "windows/dialogs/block_editors.h"
#include "windows/dialogs/borrowed_palette.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/dialogs/palette_buttons.h"
#include "windows/dialogs/text_field.h"
#include "windows/ids/editor_ids.h"
#include "windows/services/careful.h"

namespace {

// Colours chosen with the buttons are kept with OK and Cancel alike.
constexpr int kQuirkCancelKeepsColours = 1;

constexpr int kTaken = 1, kCancelled = 2;  // what the dialog ends with

// The dialog has no fields for the sizes of grid and cells, and what it reads there is 0.
constexpr bool kQuirkSizesTakenWithoutFields = true;

template <auto field>
constexpr ColourButton ButtonFor(int id, int eyedropper) {
    return ColourButtonFor<GetPlainTextFields, PutPlainTextFields, field>(id, eyedropper);
}

// The eyedroppers show what the text is drawn over: the image before it.
const Block* FindImage(const Block& block) {
    const Block* image = block.owner ? FindPreviousImage(*block.owner, block.position) : nullptr;
    return image && image->data ? image : nullptr;
}

constexpr PaletteButtons kButtons = {
    {ButtonFor<&PlainTextFields::foregroundIndex>(IDC_COLOUR, IDC_EYEDROPPER),
     ButtonFor<&PlainTextFields::backgroundIndex>(IDC_SECOND_COLOUR, IDC_SECOND_EYEDROPPER)},
    BorrowedColourCount,
    FindImage};

bool ShowPlainText(HWND dialog) {
    const Block& block = *Edited<Block>(dialog);
    PlainTextFields text = GetPlainTextFields(block);
    ShowNumber(dialog, IDC_PLAIN_LEFT, text.left);
    ShowNumber(dialog, IDC_PLAIN_TOP, text.top);
    ShowNumber(dialog, IDC_PLAIN_GRID_WIDTH, text.gridWidth);
    ShowNumber(dialog, IDC_PLAIN_GRID_HEIGHT, text.gridHeight);
    ShowNumber(dialog, IDC_PLAIN_CELL_WIDTH, text.cellWidth);
    ShowNumber(dialog, IDC_PLAIN_CELL_HEIGHT, text.cellHeight);
    ShowPaletteButtons(dialog, kButtons);
    if (!FindImage(block)) EnableEyedroppers(dialog, kButtons, false);
    return ShowBlockText(dialog, IDC_PLAIN_TEXT, block);
}

void TakeSizes(HWND dialog, PlainTextFields* text) {
    text->gridWidth = TakeNumber(dialog, IDC_PLAIN_GRID_WIDTH);
    text->gridHeight = TakeNumber(dialog, IDC_PLAIN_GRID_HEIGHT);
    text->cellWidth = static_cast<uint8_t>(TakeNumber(dialog, IDC_PLAIN_CELL_WIDTH));
    text->cellHeight = static_cast<uint8_t>(TakeNumber(dialog, IDC_PLAIN_CELL_HEIGHT));
}

int TakePlainText(HWND dialog) {
    PlainTextFields text = GetPlainTextFields(*Edited<Block>(dialog));
    text.left = TakeNumber(dialog, IDC_PLAIN_LEFT);
    text.top = TakeNumber(dialog, IDC_PLAIN_TOP);
    if (kQuirkSizesTakenWithoutFields && !Careful(Care::kPlainTextKeepsCells)) TakeSizes(dialog, &text);
    PutPlainTextFields(Edited<Block>(dialog), text);
    TakeBlockText(dialog, IDC_PLAIN_TEXT, Edited<Block>(dialog));
    defaultPlainTextGrid = {text.gridWidth, text.gridHeight, text.cellWidth, text.cellHeight};
    return kTaken;
}

constexpr DialogKind kPlainTextDialog = {
    .templateName = L"EditPlainTextBox",
    .helpKeyword = "KLMPlaintext",
    .show = ShowPlainText,
    .take = TakePlainText,
    .cancelResult = kCancelled,
    .buttons = &kButtons,
};

}  // namespace

int EditPlainText(HWND parent, Block* block) {
    BorrowedPalette palette(block);
    const int ended = RunEditingDialog(parent, kPlainTextDialog, block);
    if (ended != kCancelled) return ended;
    return Careful(Care::kCancelUndoesAll) ? 0 : kQuirkCancelKeepsColours;
}
