#include "app/not_available.h"

#include "app/services/messages.h"

namespace {

void TellNotAvailable(HWND owner) {
    MessageBox(owner, "This command is not available yet.");
}

}  // namespace

int ChooseInsertKind(HWND mainWindow, BlockList*) {
    TellNotAvailable(mainWindow);
    return 0;
}
