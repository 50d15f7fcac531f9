#include "windows/app/recent_files.h"

#include <algorithm>
#include <new>
#include <vector>

#include "platform/wide_text_win32.h"
#include "windows/ids/command_ids.h"
#include "windows/services/settings.h"

namespace {

// A file that is in the list already stays where it is.
constexpr bool kQuirkListedFileKeepsPlace = true;

using Names = std::vector<std::wstring>;

HMENU FileMenu(HWND window) {
    return GetSubMenu(GetMenu(window), 0);
}

bool IsFullPath(const std::wstring& name) {
    wchar_t letter = name.empty() ? L' ' : static_cast<wchar_t>(name[0] | 0x20);
    return letter >= L'a' && letter <= L'z' && name.compare(1, 2, L":\\") == 0;
}

void TrimEnd(std::wstring* name) {
    while (!name->empty() && name->back() <= L' ') name->pop_back();
}

std::wstring UpperCase(std::wstring text) {
    CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

std::wstring ItemText(HMENU menu, int id) {
    auto item = static_cast<UINT>(id);
    int length = std::max(GetMenuStringW(menu, item, nullptr, 0, MF_BYCOMMAND), 0);
    std::wstring text(static_cast<size_t>(length) + 1, L'\0');
    GetMenuStringW(menu, item, text.data(), length + 1, MF_BYCOMMAND);
    text.pop_back();
    return text;
}

int CountItems(HMENU menu) {
    int count = 0;
    while (GetMenuState(menu, static_cast<UINT>(RecentFileId(count)), MF_BYCOMMAND) != UINT(-1)) ++count;
    return count;
}

Names ItemTexts(HMENU menu) {
    Names names(static_cast<size_t>(CountItems(menu)));
    for (size_t i = 0; i < names.size(); ++i) {
        names[i] = ItemText(menu, RecentFileId(static_cast<int>(i)));
        TrimEnd(&names[i]);
    }
    return names;
}

bool IsListed(const std::wstring& name, const Names& names) {
    std::wstring wanted = UpperCase(name);
    return std::any_of(names.begin(), names.end(),
                       [&](const std::wstring& listed) { return UpperCase(listed) == wanted; });
}

void ReplaceItems(HMENU menu, const std::wstring& first, const Names& others) {
    for (size_t i = 0; i < others.size(); ++i)
        DeleteMenu(menu, static_cast<UINT>(RecentFileId(static_cast<int>(i))), MF_BYCOMMAND);
    int count = 0;
    auto append = [&](const std::wstring& name) {
        AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(RecentFileId(count++)), name.c_str());
    };
    append(first);
    for (const std::wstring& name : others)
        if (static_cast<uint32_t>(count) < settings.fileMenuRange && IsFullPath(name)) append(name);
}

}  // namespace

int RecentFileCount(HWND window) {
    return CountItems(FileMenu(window));
}

int RecentFileId(int index) {
    return IDM_RECENT_FIRST + index;
}

std::string GetRecentFile(HWND window, int id) {
    return id < IDM_RECENT_FIRST ? std::string() : Utf8FromWide(ItemText(FileMenu(window), id));
}

void AddRecentFile(HWND window, const std::string& name) {
    try {
        std::wstring added = WideFromUtf8(name);
        if (settings.fileMenuRange == 0 || !IsFullPath(added)) return;
        TrimEnd(&added);
        const Names listed = ItemTexts(FileMenu(window));
        if (kQuirkListedFileKeepsPlace && IsListed(added, listed)) return;
        ReplaceItems(FileMenu(window), added, listed);
    } catch (const std::bad_alloc&) {  // the file that was opened is worth more than its place in the menu
        return;
    }
}
