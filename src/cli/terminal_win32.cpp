#include "cli/terminal.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "platform/windows_api.h"

bool ErrorsGoToTerminal() {
    DWORD mode;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

void MakeInputBinary() {
    (void)_setmode(_fileno(stdin), _O_BINARY);
}

void MakeOutputBinary() {
    (void)_setmode(_fileno(stdout), _O_BINARY);
}
