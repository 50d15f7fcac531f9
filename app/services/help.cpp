#include "app/services/help.h"

#include <cstring>
#include <string>

#include "app/services/help_system.h"
#include "app/services/messages.h"
#include "app/services/shell_objects.h"
#include "platform/prompts.h"
#include "platform/wide_text.h"

namespace {

constexpr size_t kHelpNameRoom = 13;  // an 8.3 name with its terminating NUL
constexpr char kNoFiles[] =
    "The help can't be shown, as its files are missing. TELVAR.HLP and the folder \"help\" belong beside the program.";
constexpr char kNoBrowser[] =
    "Neither a help viewer nor a Web browser could be started. The pages of the help are in the folder \"help\" beside "
    "the program.";

char helpFilePath[kPathBytes];
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

size_t FolderBytes(const char* program) {
    const char* end = program;
    for (const char* at = program; *at; ++at)
        if (*at == '\\' || *at == ':') end = at + 1;
    return static_cast<size_t>(end - program);
}

bool IsFile(const std::wstring& path) {
    DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// The help system takes its file, keyword and window record as bytes, in the system's encoding. A path that this can't
// express, it can't be given.
bool CallHelp(HelpSystem* system, HWND owner, const char* helpFile, UINT command, const void* data) {
    std::wstring path = WideFromUtf8(helpFile);
    char bytes[kPathBytes * 2] = {};
    wchar_t back[kPathBytes] = {};
    if (!WideCharToMultiByte(CP_ACP, 0, path.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr)) return false;
    if (!MultiByteToWideChar(CP_ACP, 0, bytes, -1, back, kPathBytes) || path != back) return false;
    return system->callViewer(owner, bytes, command, data);
}

bool OpenInViewer(HelpSystem* system, HWND owner, const char* helpFile, const char* keyword) {
    if (system->viewerFailed || !IsFile(WideFromUtf8(helpFile))) return false;
    system->viewerFailed = !CallHelp(system, owner, helpFile, HELP_KEY, keyword) || !system->viewerAppears();
    return !system->viewerFailed;
}

}  // namespace

void HelpFileBeside(const char* program, char* path) {
    size_t folderBytes = FolderBytes(program);
    bool fits = folderBytes + kHelpNameRoom < kPathBytes;
    if (folderBytes > kPathBytes - 2) folderBytes = kPathBytes - 2;
    memcpy(path, program, folderBytes);
    strcpy(path + folderBytes, fits ? "TELVAR.HLP" : "?");
}

const char* HelpFilePath() {
    HelpFileBeside(ProgramPath().c_str(), helpFilePath);
    return helpFilePath;
}

HelpOutcome OpenHelp(HWND owner, const char* program, const char* keyword, HelpSystem* system) {
    char helpFile[kPathBytes];
    HelpFileBeside(program, helpFile);
    if (OpenInViewer(system, owner, helpFile, keyword)) return HelpOutcome::kInViewer;
    std::string page = std::string(program, FolderBytes(program)) + "help\\" + keyword + ".html";
    std::wstring path = WideFromUtf8(page);
    if (!IsFile(path)) return HelpOutcome::kNoFiles;
    return system->openPage(owner, path.c_str()) ? HelpOutcome::kInBrowser : HelpOutcome::kNoBrowser;
}

void ShowHelp(HWND owner, const char* keyword) {
    AllowSetForegroundWindow(ASFW_ANY);  // the page is to come up in front of us
    switch (OpenHelp(owner, ProgramPath().c_str(), keyword, &helpSystem)) {
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
