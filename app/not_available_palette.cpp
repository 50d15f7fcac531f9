#include "app/services/messages.h"
#include "editing/palette_match.h"

int RunPaletteDialog(WindowHandle owner, const Block&) {
    MessageBox(owner, "Images whose colours differ from the document's can't be inserted yet.");
    return kPaletteCancel;
}
