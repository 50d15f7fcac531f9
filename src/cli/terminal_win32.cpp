#include "cli/terminal.h"
#include "platform/api_win32.h"

bool ErrorsGoToTerminal() {
    DWORD mode;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}
