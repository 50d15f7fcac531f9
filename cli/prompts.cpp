// The core's messages on the command line: texts on standard error, and the answers that options gave.
#include "platform/prompts.h"

#include <cstdio>

#include "cli/answers.h"
#include "editing/palette_match.h"

void ShowMessage(WindowHandle, const char* text) {
    fprintf(stderr, "zephyr: %s\n", text);
}

int AskYesNo(WindowHandle, const char* text) {
    if (answers.yesNo) return *answers.yesNo;
    fprintf(stderr, "zephyr: %s\n", text);
    return kAnswerNo;
}

bool AskForGifFile(WindowHandle, std::string*) {
    return false;
}

// Commands that import images say beforehand what is to be done with other palettes.
int RunPaletteDialog(WindowHandle, const Block&) {
    return kPaletteCancel;
}
