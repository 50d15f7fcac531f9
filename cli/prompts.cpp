// The core's messages on the command line: texts on standard error, and no for an answer.
#include "platform/prompts.h"

#include <cstdio>

void ShowMessage(WindowHandle, const char* text) {
    fprintf(stderr, "zephyr: %s\n", text);
}

int AskYesNo(WindowHandle, const char* text) {
    fprintf(stderr, "zephyr: %s\n", text);
    return kAnswerNo;
}

bool AskForGifFile(WindowHandle, char*) {
    return false;
}
