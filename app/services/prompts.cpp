// How the editor's core speaks to its user: through the program's own dialogs.
#include "platform/prompts.h"

#include "app/services/file_dialogs.h"
#include "app/services/messages.h"

static_assert(kAnswerYes == IDYES && kAnswerNo == IDNO, "the core's answers are the dialogs' ids");

void ShowMessage(WindowHandle owner, const char* text) {
    MessageBox(owner, text);
}

int AskYesNo(WindowHandle owner, const char* text) {
    return YesnoBox(owner, text);
}

bool AskForGifFile(WindowHandle owner, std::string* path) {
    return OpenGifDialog(owner, path);
}
