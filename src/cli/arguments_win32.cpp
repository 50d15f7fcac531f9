#include "cli/arguments.h"
#include "platform/wide_text_win32.h"
#include "platform/windows_api.h"

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <stdio.h>

Words CommandLineWords(int, char**) {
    // What we print is UTF-8 with line feeds, byte for byte the same as elsewhere.
    _setmode(_fileno(stdout), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    Words words;
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; arguments && i < count; ++i) words.push_back(Utf8FromWide(arguments[i]));
    LocalFree(arguments);
    return words;
}
