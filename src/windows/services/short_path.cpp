#include "windows/services/short_path.h"

#include <algorithm>

namespace {

constexpr wchar_t kSeparators[] = L"\\/";
constexpr wchar_t kDots[] = L"...";
constexpr size_t kDotUnits = 3;
constexpr size_t kFewestUnits = 8;  // of a name, however little room there is

bool IsFirstHalf(wchar_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}

// Drive and first folder with its separator, "C:\films\" or "\\server\share\"; without the folder where it is longer
// than `most`.
std::wstring BeginningOf(const std::wstring& path, size_t most) {
    const size_t root = path.find_first_of(kSeparators, path.starts_with(L"\\\\") ? 2 : 0);
    if (root == std::wstring::npos) return {};
    const size_t folder = path.find_first_of(kSeparators, root + 1);
    return path.substr(0, folder < most ? folder + 1 : root + 1);
}

}  // namespace

std::wstring NameOfPath(const std::wstring& path) {
    const size_t separator = path.find_last_of(kSeparators);
    return separator == std::wstring::npos ? path : path.substr(separator + 1);
}

std::wstring WithoutMiddle(const std::wstring& text, size_t units) {
    if (text.size() <= units) return text;
    size_t end = units / 2, from = text.size() - units / 2;
    if (end > 0 && IsFirstHalf(text[end - 1])) --end;
    if (IsFirstHalf(text[from - 1])) ++from;
    return text.substr(0, end) + kDots + text.substr(from);
}

std::wstring ShortPath(const std::wstring& path, size_t units) {
    if (path.size() <= units) return path;
    const std::wstring name = NameOfPath(path), beginning = BeginningOf(path, units / 2);
    const bool hasMore = beginning.size() + name.size() < path.size();  // folders between the two
    const std::wstring head = hasMore ? beginning + kDots + L'\\' : beginning;
    if (head.size() + name.size() > units) {
        const size_t taken = std::min(units, head.size() + kDotUnits);
        return head + WithoutMiddle(name, std::max(units - taken, kFewestUnits));
    }
    size_t from = path.size() - name.size();  // of the path that is kept
    for (size_t next; (next = path.find_last_of(kSeparators, from - 2)) != std::wstring::npos; from = next + 1)
        if (next < beginning.size() || head.size() + path.size() - next - 1 > units) break;
    return head + path.substr(from);
}
