#include "app/services/help.h"

#include <cstring>
#include <string>

#include "app/services/shell_objects.h"
#include "platform/prompts.h"
#include "platform/wide_text.h"

namespace {

constexpr size_t kHelpNameRoom = 13;  // an 8.3 name with its terminating NUL

char helpFilePath[kPathBytes];

std::wstring ProgramPath() {
    constexpr DWORD kLongestPath = 32768;
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = GetModuleFileNameW(hInstance, path.data(), MAX_PATH);
    if (length >= MAX_PATH) {
        path.resize(kLongestPath);
        length = GetModuleFileNameW(hInstance, path.data(), kLongestPath);
    }
    path.resize(length);
    return path;
}

// The help system takes its keyword and its window record as bytes, so the path goes with them in the system's
// encoding.
void CallHelp(HWND owner, UINT command, const void* data) {
    std::wstring path = WideFromUtf8(HelpFilePath());
    char bytes[kPathBytes * 2] = {};
    if (!WideCharToMultiByte(CP_ACP, 0, path.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr)) return;
    WinHelpA(owner, bytes, command, reinterpret_cast<ULONG_PTR>(data));
}

}  // namespace

void HelpFileBeside(const char* program, char* path) {
    const char* end = program;
    for (const char* at = program; *at; ++at)
        if (*at == '\\' || *at == ':') end = at + 1;
    auto folderBytes = static_cast<size_t>(end - program);
    bool fits = folderBytes + kHelpNameRoom < kPathBytes;
    if (folderBytes > kPathBytes - 2) folderBytes = kPathBytes - 2;
    memcpy(path, program, folderBytes);
    strcpy(path + folderBytes, fits ? "TELVAR.HLP" : "?");
}

const char* HelpFilePath() {
    HelpFileBeside(Utf8FromWide(ProgramPath()).c_str(), helpFilePath);
    return helpFilePath;
}

void ShowHelp(HWND owner, const char* keyword) {
    CallHelp(owner, HELP_KEY, keyword);
}

void PlaceHelpWindow(HWND owner) {
    constexpr int kRecordBytes = 26;  // without the padding that the compiler adds behind the member name
    HELPWININFOA place = {};
    place.wStructSize = kRecordBytes;
    place.x = 10;
    place.y = 10;
    place.dx = 512;
    place.dy = 1004;
    CallHelp(owner, HELP_SETWINPOS, &place);
}
