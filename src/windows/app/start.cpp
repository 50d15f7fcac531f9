// The editor's entry point.
#include <exception>
#include <string>

#include "platform/wide_text_win32.h"
#include "windows/app/settings_file.h"
#include "windows/app/start_up.h"

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the system names them in Hungarian
int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR, int showCommand) {
    try {
        // The system's own narrow form of the command line loses characters; take the whole one.
        std::string arguments = Utf8FromWide(CommandLineArguments(GetCommandLineW()));
        FindSettingsFolder();
        RunEditor(instance, previous, arguments.c_str(), showCommand);
    } catch (const std::exception&) {
        return 0;  // not even memory for the command line
    }
    return 0;
}
