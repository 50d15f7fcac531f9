// The owner-drawn buttons of the block editors: a colour button shows one palette entry of the edited block, an
// eyedropper button takes its index from an image.
#pragma once

#include <cstdint>

#include "gif/block.h"
#include "platform/windows_api.h"

struct ColourButton {
    int id;                                // 0: none
    int eyedropper;                        // the id of the button that takes its index from an image; 0: none
    uint8_t (*index)(const Block& block);  // the palette index it stands for
    void (*store)(Block* block, uint8_t index);
};

// The button for the index `field` among the fields that `get` and `put` read and write.
template <auto get, auto put, auto field>
constexpr ColourButton ColourButtonFor(int id, int eyedropper) {
    return {id, eyedropper, [](const Block& block) { return get(block).*field; },
            [](Block* block, uint8_t index) {
                auto fields = get(*block);
                fields.*field = index;
                put(block, fields);
            }};
}

struct PaletteButtons {
    ColourButton buttons[2];
    uint32_t (*colourCount)(const Block& block);    // how many entries of its palette can be chosen
    const Block* (*findImage)(const Block& block);  // the image that the eyedroppers show; null when there is none
};

// Tells screen readers what the buttons are for. Once, when the dialog begins.
void NamePaletteButtons(HWND dialog, const PaletteButtons& buttons);

// Shows the indexes as the texts of the colour buttons and draws them afresh.
void ShowPaletteButtons(HWND dialog, const PaletteButtons& buttons);

// Enables or disables all eyedropper buttons.
void EnableEyedroppers(HWND dialog, const PaletteButtons& buttons, bool enable);

// The answer to a click on `id`: lets the user choose and stores the choice in the edited block at once.
// False when it is none of the buttons.
bool OnPaletteButton(HWND dialog, const PaletteButtons& buttons, int id);

// The answer to WM_DRAWITEM; FALSE when it is none of the buttons.
BOOL DrawPaletteButton(HWND dialog, const PaletteButtons& buttons, const DRAWITEMSTRUCT& item);
