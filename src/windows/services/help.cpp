#include "windows/services/help.h"

#include "platform/wide_text_win32.h"
#include "windows/services/help_system.h"
#include "windows/services/messages.h"
#include "windows/services/shell_objects.h"

namespace {

constexpr size_t kHelpNameUnits = 13;  // an 8.3 name with its terminating NUL
constexpr char kNoFiles[] =
    "The help can't be shown, as its files are missing. TELVAR.HLP and the folder \"help\" belong beside the program.";
constexpr char kNoBrowser[] =
    "Neither a help viewer nor a Web browser could be started. The pages of the help are in the folder \"help\" beside "
    "the program.";

HelpSystem helpSystem = {CallHelpViewer, HelpViewerAppears, OpenInBrowser, false};

std::string ProgramPath() {
    constexpr DWORD kLongestPath = 32768;
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = GetModuleFileNameW(hInstance, path.data(), MAX_PATH);
    if (length >= MAX_PATH) {
        path.resize(kLongestPath);
        length = GetModuleFileNameW(hInstance, path.data(), kLongestPath);
    }
    path.resize(length);
    return Utf8FromWide(path);
}

std::string FolderOf(const std::string& program) {
    return program.substr(0, program.find_last_of("\\:") + 1);  // nothing found: npos + 1 is 0
}

bool IsFile(const std::wstring& path) {
    DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// The help system takes its file, keyword and window record as bytes, in the system's encoding. A path that this can't
// express, it can't be given.
bool CallHelp(HelpSystem* system, HWND owner, const std::string& helpFile, UINT command, const void* data) {
    std::wstring path = WideFromUtf8(helpFile);
    std::string bytes = AnsiFromWide(path);
    return WideFromAnsi(bytes) == path && system->callViewer(owner, bytes.c_str(), command, data);
}

bool OpenInViewer(HelpSystem* system, HWND owner, const std::string& helpFile, const char* keyword) {
    if (system->viewerFailed || !IsFile(WideFromUtf8(helpFile))) return false;
    system->viewerFailed = !CallHelp(system, owner, helpFile, HELP_KEY, keyword) || !system->viewerAppears();
    return !system->viewerFailed;
}

}  // namespace

std::string HelpFileBeside(const std::string& program) {
    std::string folder = FolderOf(program);
    bool fits = WideFromUtf8(folder).size() + kHelpNameUnits < MAX_PATH;
    return folder + (fits ? "TELVAR.HLP" : "?");
}

std::string HelpFilePath() {
    return HelpFileBeside(ProgramPath());
}

HelpOutcome OpenHelp(HWND owner, const std::string& program, const char* keyword, HelpSystem* system) {
    if (OpenInViewer(system, owner, HelpFileBeside(program), keyword)) return HelpOutcome::kInViewer;
    std::string page = FolderOf(program) + "help\\" + keyword + ".html";
    std::wstring path = WideFromUtf8(page);
    if (!IsFile(path)) return HelpOutcome::kNoFiles;
    return system->openPage(owner, path.c_str()) ? HelpOutcome::kInBrowser : HelpOutcome::kNoBrowser;
}

void ShowHelp(HWND owner, const char* keyword) {
    AllowSetForegroundWindow(ASFW_ANY);  // the page is to come up in front of us
    switch (OpenHelp(owner, ProgramPath(), keyword, &helpSystem)) {
        case HelpOutcome::kNoFiles: return MessageBox(owner, kNoFiles);
        case HelpOutcome::kNoBrowser: return MessageBox(owner, kNoBrowser);
        case HelpOutcome::kInViewer:
        case HelpOutcome::kInBrowser: return;
    }
}

void PlaceHelpWindow(HWND owner) {
    constexpr int kRecordBytes = 26;  // without the padding that the compiler adds behind the member name
    HELPWININFOA place = {};
    place.wStructSize = kRecordBytes;
    place.x = 10;
    place.y = 10;
    place.dx = 512;
    place.dy = 1004;
    // Newer Windows explains the lack of a viewer in a window of its own whenever it is called: once is enough.
    helpSystem.viewerFailed = !CallHelp(&helpSystem, owner, HelpFilePath(), HELP_SETWINPOS, &place);
}

void CloseHelp(HWND owner) {
    CallHelp(&helpSystem, owner, HelpFilePath(), HELP_QUIT, nullptr);
}
