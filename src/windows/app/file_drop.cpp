#include "windows/app/file_drop.h"

#include <algorithm>

#include "windows/app/block_list_view.h"
#include "windows/app/commands.h"
#include "windows/app/document_commands.h"
#include "windows/app/main_window.h"
#include "windows/app/shell_state.h"
#include "windows/services/dropped_files.h"

namespace {

// The key may have been pressed for another program, from which the files come.
bool IsControlDown() {
    return GetKeyState(VK_CONTROL) < 0 || GetAsyncKeyState(VK_CONTROL) < 0;
}

void InsertDropped(HWND window, int line, std::vector<std::string> paths) {
    std::ranges::sort(paths);
    const int last = static_cast<int>(document.count) - 1;
    InsertImageFiles(window, line == kNoLine ? last : std::min(line, last), paths);
}

}  // namespace

LRESULT OnDropFiles(HWND window, WPARAM drop) {
    POINT place;
    const std::vector<std::string> paths = TakeDroppedFiles(window, reinterpret_cast<HDROP>(drop), &place);
    if (paths.empty() || !IsWindowEnabled(window)) return 0;  // while a dialog is open the document is not to change
    const bool inserts = IsControlDown() && document.count > 0;
    SetForegroundWindow(window);
    if (inserts)
        InsertDropped(window, LineAt(window, place), paths);
    else if (LeaveDocument(window))
        SendMessageW(window, UM_OPENFILE, 0, reinterpret_cast<LPARAM>(paths[0].c_str()));
    return 0;
}
