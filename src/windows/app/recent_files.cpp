#include "windows/app/recent_files.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "platform/wide_text_win32.h"
#include "windows/ids/command_ids.h"
#include "windows/services/careful.h"
#include "windows/services/settings.h"
#include "windows/services/short_path.h"

namespace {

// A file that is in the list already stays where it is.
constexpr bool kQuirkListedFileKeepsPlace = true;

constexpr size_t kMostShown = 56;  // UTF-16 units of a name, in careful mode

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

// An item whose text is not its name.
struct RewordedItem {
    int id;
    std::wstring text, name;
};
std::vector<RewordedItem> rewordedItems;

// The name that item `id` stands for.
std::wstring ItemName(HMENU menu, int id) {
    std::wstring text = ItemText(menu, id);
    const auto found =
        std::ranges::find_if(rewordedItems, [&](const auto& item) { return item.id == id && item.text == text; });
    return found == rewordedItems.end() ? text : found->name;
}

// A single & would underline what follows.
std::wstring WithAmpersandsDoubled(std::wstring text) {
    for (size_t at = text.find(L'&'); at != std::wstring::npos; at = text.find(L'&', at + 2)) text.insert(at, 1, L'&');
    return text;
}

std::wstring TextForName(const std::wstring& name) {
    std::wstring text = Careful(Care::kLongNamesShortened) ? ShortPath(name, kMostShown) : name;
    return Careful(Care::kAmpersandsShown) ? WithAmpersandsDoubled(std::move(text)) : text;
}

int CountItems(HMENU menu) {
    int count = 0;
    while (GetMenuState(menu, static_cast<UINT>(RecentFileId(count)), MF_BYCOMMAND) != UINT(-1)) ++count;
    return count;
}

Names ItemNames(HMENU menu) {
    Names names(static_cast<size_t>(CountItems(menu)));
    for (size_t i = 0; i < names.size(); ++i) {
        names[i] = ItemName(menu, RecentFileId(static_cast<int>(i)));
        TrimEnd(&names[i]);
    }
    return names;
}

bool IsListed(const std::wstring& name, const Names& names) {
    std::wstring wanted = UpperCase(name);
    return std::any_of(names.begin(), names.end(),
                       [&](const std::wstring& listed) { return UpperCase(listed) == wanted; });
}

// As many of the names as the list may hold.
void ReplaceItems(HMENU menu, const Names& names) {
    for (int i = CountItems(menu); i-- > 0;) DeleteMenu(menu, static_cast<UINT>(RecentFileId(i)), MF_BYCOMMAND);
    rewordedItems.clear();
    int count = 0;
    for (const std::wstring& name : names) {
        if (static_cast<uint32_t>(count) >= settings.fileMenuRange || !IsFullPath(name)) continue;
        const int id = RecentFileId(count++);
        const std::wstring text = TextForName(name);
        if (text != name) rewordedItems.push_back({id, text, name});
        AppendMenuW(menu, MF_STRING, static_cast<UINT_PTR>(id), text.c_str());
    }
}

// What tells this editor's own news from those of another one that keeps the same file.
struct Session {
    Names atStart;  // in the list when it was read
    Names gone;     // found not to exist any more
};
Session session;

Names WideNames(const std::vector<std::string>& names) {
    Names wide;
    for (const std::string& name : names) wide.push_back(WideFromUtf8(name));
    return wide;
}

}  // namespace

int RecentFileCount(HWND window) {
    return CountItems(FileMenu(window));
}

int RecentFileId(int index) {
    return IDM_RECENT_FIRST + index;
}

std::string GetRecentFile(HWND window, int id) {
    return id < IDM_RECENT_FIRST ? std::string() : Utf8FromWide(ItemName(FileMenu(window), id));
}

void AddRecentFile(HWND window, const std::string& name) {
    try {
        std::wstring added = WideFromUtf8(name);
        if (settings.fileMenuRange == 0 || !IsFullPath(added)) return;
        TrimEnd(&added);
        Names names = ItemNames(FileMenu(window));
        if (kQuirkListedFileKeepsPlace && IsListed(added, names)) return;
        names.insert(names.begin(), added);
        ReplaceItems(FileMenu(window), names);
    } catch (const std::bad_alloc&) {  // the file that was opened is worth more than its place in the menu
        return;
    }
}

std::vector<std::string> RecentFiles(HWND window) {
    std::vector<std::string> names;
    const int count = RecentFileCount(window);
    names.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) names.push_back(GetRecentFile(window, RecentFileId(i)));
    return names;
}

void ShowRecentFiles(HWND window) {
    try {
        ReplaceItems(FileMenu(window), ItemNames(FileMenu(window)));
    } catch (const std::bad_alloc&) {  // they stay as they are
        return;
    }
}

void RemoveRecentFile(HWND window, int id) {
    HMENU menu = FileMenu(window);
    Names names = ItemNames(menu);
    const auto index = static_cast<size_t>(id - IDM_RECENT_FIRST);
    if (index >= names.size()) return;
    session.gone.push_back(names[index]);
    names.erase(names.begin() + static_cast<Names::difference_type>(index));
    ReplaceItems(menu, names);
}

void StartRecentFiles() {
    session = {};
    rewordedItems.clear();
}

void NoteRecentFilesRead(HWND window) {
    session.atStart = ItemNames(FileMenu(window));
}

std::vector<std::string> MergeRecentFiles(HWND window, const std::vector<std::string>& stored) {
    std::vector<std::string> merged;
    Names listed;
    auto add = [&](const std::wstring& name) {
        if (merged.size() >= settings.fileMenuRange || !IsFullPath(name) || IsListed(name, listed)) return;
        listed.push_back(name);
        merged.push_back(Utf8FromWide(name));
    };
    const Names ours = ItemNames(FileMenu(window));
    for (const std::wstring& name : ours)
        if (!IsListed(name, session.atStart)) add(name);
    for (const std::wstring& name : WideNames(stored))
        if (!IsListed(name, session.gone)) add(name);
    for (const std::wstring& name : ours) add(name);
    return merged;
}
