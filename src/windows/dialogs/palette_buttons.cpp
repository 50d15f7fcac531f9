#include "windows/dialogs/palette_buttons.h"

#include <algorithm>
#include <iterator>

#include "windows/dialogs/colour_grid_reader.h"
#include "windows/dialogs/draw_buttons.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/fields.h"
#include "windows/dialogs/pick_colour.h"
#include "windows/dialogs/select_colour.h"
#include "windows/ids/editor_ids.h"
#include "windows/services/screen_reader.h"

namespace {

void StoreIndex(HWND dialog, const PaletteButtons& buttons, const ColourButton& button, uint32_t index) {
    button.store(Edited<Block>(dialog), static_cast<uint8_t>(index));
    ShowPaletteButtons(dialog, buttons);
}

void OnColour(HWND dialog, const PaletteButtons& buttons, const ColourButton& button) {
    const Block& block = *Edited<Block>(dialog);
    uint32_t index = button.index(block);
    if (SelectColour(dialog, block.palette, buttons.colourCount(block), &index))
        StoreIndex(dialog, buttons, button, index);
}

void OnEyedropper(HWND dialog, const PaletteButtons& buttons, const ColourButton& button) {
    uint32_t index = button.index(*Edited<Block>(dialog));
    const Block* image = buttons.findImage(*Edited<Block>(dialog));
    if (image && PickColourFromImage(dialog, *image, &index)) StoreIndex(dialog, buttons, button, index);
}

// "Background: colour 3, red 0, green 51, blue 102".
std::wstring ReadColourButton(HWND button) {
    const Palette& palette = Edited<Block>(GetParent(button))->palette;
    const UINT index = GetDlgItemInt(GetParent(button), GetDlgCtrlID(button), nullptr, FALSE);
    return LabelBefore(button) + L": " + DescribeColour(index, palette[static_cast<int>(index % kPaletteEntries)]);
}

std::wstring ReadEyedropper(HWND button) {
    return LabelBefore(button) + L": pick from an image";
}

constexpr ReadWindow kReadColour = {ReadColourButton}, kReadEyedropper = {ReadEyedropper};

}  // namespace

void NamePaletteButtons(HWND dialog, const PaletteButtons& buttons) {
    for (const ColourButton& button : buttons.buttons) {
        if (button.id) TellReaders(GetDlgItem(dialog, button.id), kReadColour);
        if (button.eyedropper) TellReaders(GetDlgItem(dialog, button.eyedropper), kReadEyedropper);
    }
}

void ShowPaletteButtons(HWND dialog, const PaletteButtons& buttons) {
    for (const ColourButton& button : buttons.buttons) {
        if (!button.id) continue;
        ShowNumber(dialog, button.id, button.index(*Edited<Block>(dialog)));
        InvalidateRect(GetDlgItem(dialog, button.id), nullptr, FALSE);
    }
}

void EnableEyedroppers(HWND dialog, const PaletteButtons& buttons, bool enable) {
    for (const ColourButton& button : buttons.buttons)
        if (button.eyedropper) EnableControl(dialog, button.eyedropper, enable);
}

bool OnPaletteButton(HWND dialog, const PaletteButtons& buttons, int id) {
    if (id == 0) return false;  // that of a button that isn't there
    return std::any_of(std::begin(buttons.buttons), std::end(buttons.buttons), [&](const ColourButton& button) {
        if (id == button.id) OnColour(dialog, buttons, button);
        if (id == button.eyedropper) OnEyedropper(dialog, buttons, button);
        return id == button.id || id == button.eyedropper;
    });
}

BOOL DrawPaletteButton(HWND dialog, const PaletteButtons& buttons, const DRAWITEMSTRUCT& item) {
    const Block& block = *Edited<Block>(dialog);
    auto id = static_cast<int>(item.CtlID);
    if (id == 0) return FALSE;  // that of a button that isn't there
    for (const ColourButton& button : buttons.buttons) {
        if (id == button.id)
            DrawColourButton(dialog, item, block.palette, button.index(block));
        else if (id == button.eyedropper)
            DrawBitmapButton(dialog, item, IDB_EYEDROPPER, 0);
        else
            continue;
        return TRUE;
    }
    return FALSE;
}
