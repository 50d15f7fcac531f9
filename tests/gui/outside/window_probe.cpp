// Looks at the editor's window from another process, as a user's eyes do:
//   window_probe lines          prints the list's lines (UTF-8, without the byte between kind and details)
//   window_probe title TEXT     waits until the title contains TEXT
//   window_probe count N        waits until the list has N lines
//   window_probe dialog         waits until a dialog is in front
//   window_probe point N        prints the place of line N on the screen: x y
// Ends with 0, or with 1 when there is no window or the waiting took too long.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "app/main_window.h"
#include "platform/wide_text.h"
#include "resources/command_ids.h"

namespace {

constexpr int kPolls = 300;
constexpr DWORD kPollMilliseconds = 50;

HWND List(HWND window) {
    return GetDlgItem(window, IDC_BLOCK_LIST);
}

int CountLines(HWND window) {
    return static_cast<int>(SendMessageW(List(window), LB_GETCOUNT, 0, 0));
}

std::string Title(HWND window) {
    wchar_t title[512] = L"";
    GetWindowTextW(window, title, 512);
    return Utf8FromWide(title);
}

void PrintLines(HWND window) {
    for (int i = 0; i < CountLines(window); ++i) {
        wchar_t text[1024] = L"";
        SendMessageW(List(window), LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
        std::wstring line = text;
        size_t separator = line.find(L'\xFE');
        if (separator != line.npos) line.erase(separator, 1);
        printf("%s\n", Utf8FromWide(line).c_str());
    }
}

void PrintPoint(HWND window, int line) {
    constexpr int kInside = 6;
    RECT place = {};
    SendMessageW(List(window), LB_GETITEMRECT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&place));
    POINT point = {place.left + kInside, place.top + kInside};
    ClientToScreen(List(window), &point);
    printf("%ld %ld\n", point.x, point.y);
}

bool WaitFor(const std::function<bool(HWND)>& reached) {
    for (int i = 0; i < kPolls; ++i, Sleep(kPollMilliseconds)) {
        HWND window = FindWindowW(kMainWindowClass, nullptr);
        if (window && reached(window)) return true;
    }
    return false;
}

bool DialogIsInFront(HWND window) {
    HWND dialog = FindWindowW(L"#32770", nullptr);
    return dialog && IsWindowVisible(dialog) && !IsWindowEnabled(window);
}

}  // namespace

int main(int count, char** arguments) {
    std::string action = count > 1 ? arguments[1] : "";
    const char* value = count > 2 ? arguments[2] : "";
    if (action == "title") return !WaitFor([&](HWND w) { return Title(w).find(value) != std::string::npos; });
    if (action == "count") return !WaitFor([&](HWND w) { return CountLines(w) == atoi(value); });
    if (action == "dialog") return !WaitFor(DialogIsInFront);
    HWND window = FindWindowW(kMainWindowClass, nullptr);
    if (!window) return 1;
    if (action == "lines") PrintLines(window);
    if (action == "point") PrintPoint(window, atoi(value));
    return 0;
}
