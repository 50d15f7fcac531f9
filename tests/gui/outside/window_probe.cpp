// Looks at the editor's window from another process, as a user's eyes do:
//   window_probe lines          prints the list's lines (UTF-8, without the byte between kind and details)
//   window_probe title TEXT     waits until the title contains TEXT
//   window_probe count N        waits until the list has N lines
//   window_probe dialog         waits until a dialog is in front
//   window_probe point N        prints the place of line N on the screen: x y
// Waits for the window itself, too. Ends with 0, or with 1 when the waiting took too long.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/main_window.h"
#include "platform/wide_text.h"
#include "resources/command_ids.h"

namespace {

LRESULT AskList(HWND window, UINT message, int line, void* answer) {
    return SendDlgItemMessageW(window, IDC_BLOCK_LIST, message, static_cast<WPARAM>(line),
                               reinterpret_cast<LPARAM>(answer));
}

void PrintLines(HWND window) {
    wchar_t text[1024];
    for (int i = 0; AskList(window, LB_GETTEXT, i, text) != LB_ERR; ++i) {
        std::wstring line = text;
        if (size_t separator = line.find(L'\xFE'); separator != line.npos) line.erase(separator, 1);
        printf("%s\n", Utf8FromWide(line).c_str());
    }
}

void PrintPoint(HWND window, int line) {
    RECT place = {};
    AskList(window, LB_GETITEMRECT, line, &place);
    POINT inside = {place.left + 6, place.top + 6};
    ClientToScreen(GetDlgItem(window, IDC_BLOCK_LIST), &inside);
    printf("%ld %ld\n", inside.x, inside.y);
}

bool IsReached(HWND window, const std::string& action, const char* value) {
    wchar_t title[512] = L"";
    GetWindowTextW(window, title, 512);
    if (action == "title") return Utf8FromWide(title).find(value) != std::string::npos;
    if (action == "count") return AskList(window, LB_GETCOUNT, 0, nullptr) == atoi(value);
    return action != "dialog" || (IsWindowVisible(FindWindowW(L"#32770", nullptr)) && !IsWindowEnabled(window));
}

}  // namespace

int main(int count, char** arguments) {
    const std::string action = count > 1 ? arguments[1] : "";
    const char* value = count > 2 ? arguments[2] : "";
    HWND window = nullptr;
    for (int polls = 0; !window || !IsReached(window, action, value); Sleep(50)) {
        if (++polls > 300) return 1;
        window = FindWindowW(kMainWindowClass, nullptr);
    }
    if (action == "lines") PrintLines(window);
    if (action == "point") PrintPoint(window, atoi(value));
    return 0;
}
