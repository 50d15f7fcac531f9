#include "cli/terminal.h"
#include "platform/windows_api.h"

bool ErrorsGoToTerminal() {
    DWORD mode;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}
