#include <unistd.h>

#include "cli/terminal.h"

bool ErrorsGoToTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

void MakeInputBinary() {}

void MakeOutputBinary() {}
