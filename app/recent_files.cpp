#include "app/recent_files.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "app/services/settings.h"
#include "platform/memory.h"
#include "platform/wide_text.h"
#include "resources/command_ids.h"

namespace {

constexpr size_t kRowBytes = kPathBytes + 1;

// The names in the menu, one per row; an empty row stands for an item without a name.
using NameRow = char[kRowBytes];

HMENU FileMenu(HWND window) {
    return GetSubMenu(GetMenu(window), 0);
}

bool IsFullPath(const char* name) {
    char letter = static_cast<char>(*name | 0x20);
    return letter >= 'a' && letter <= 'z' && name[1] == ':' && name[2] == '\\';
}

void TrimEnd(char* name) {
    size_t length = strlen(name);
    while (length > 0 && static_cast<unsigned char>(name[length - 1]) <= ' ') --length;
    name[length] = 0;
}

std::wstring UpperCase(const char* name) {
    std::wstring text = WideFromUtf8(name);
    CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

void AppendItem(HMENU menu, int index, const char* name) {
    AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(RecentFileId(index)), WideFromUtf8(name).c_str());
}

int CountItems(HMENU menu) {
    int count = 0;
    while (GetMenuState(menu, static_cast<UINT>(RecentFileId(count)), MF_BYCOMMAND) != UINT(-1)) ++count;
    return count;
}

// Reads the first `rows` items; returns how many there are.
int ReadItems(HWND window, NameRow* names, uint32_t rows) {
    int count = RecentFileCount(window);
    for (int i = 0; i < count && static_cast<uint32_t>(i) < rows; ++i)
        if (GetRecentFile(window, RecentFileId(i), names[i])) TrimEnd(names[i]);
    return count;
}

bool IsListed(const char* name, const NameRow* names, uint32_t rows) {
    std::wstring wanted = UpperCase(name);
    for (uint32_t i = 0; i < rows; ++i)
        if (UpperCase(names[i]) == wanted) return true;
    return false;
}

void ReplaceItems(HMENU menu, int oldCount, const char* first, const NameRow* others, uint32_t rows) {
    for (int i = 0; i < oldCount; ++i) DeleteMenu(menu, static_cast<UINT>(RecentFileId(i)), MF_BYCOMMAND);
    int count = 0;
    AppendItem(menu, count++, first);
    for (uint32_t i = 0; i < rows && static_cast<uint32_t>(count) < settings.fileMenuRange; ++i)
        if (IsFullPath(others[i])) AppendItem(menu, count++, others[i]);
}

}  // namespace

int RecentFileCount(HWND window) {
    return CountItems(FileMenu(window));
}

int RecentFileId(int index) {
    return IDM_RECENT_FIRST + index;
}

bool GetRecentFile(HWND window, int id, char* name) {
    if (id < IDM_RECENT_FIRST) return false;
    wchar_t text[kPathBytes];
    int length = GetMenuStringW(FileMenu(window), static_cast<UINT>(id), text, kPathBytes, MF_BYCOMMAND);
    std::string path = Utf8FromWide({text, static_cast<size_t>(length > 0 ? length : 0)});
    if (path.empty() || path.size() >= kPathBytes) return false;
    strcpy(name, path.c_str());
    return true;
}

void AddRecentFile(HWND window, const char* name) {
    if (settings.fileMenuRange == 0 || !IsFullPath(name) || strlen(name) >= kPathBytes) return;
    char trimmed[kPathBytes];
    strcpy(trimmed, name);
    TrimEnd(trimmed);
    OwnedMemory table(AllocateMemory(uint64_t{settings.fileMenuRange} * kRowBytes));
    MemoryLock lock(table.Get());
    if (!lock) return;
    auto* names = lock.As<NameRow>();
    int count = ReadItems(window, names, settings.fileMenuRange);
    uint32_t rows = std::min(static_cast<uint32_t>(count), settings.fileMenuRange);
    if (!IsListed(trimmed, names, rows)) ReplaceItems(FileMenu(window), count, trimmed, names, rows);
}
