#include "windows/services/dropped_files.h"

#include "platform/wide_text_win32.h"

std::vector<std::string> TakeDroppedFiles(HWND window, HDROP drop, POINT* place) {
    constexpr UINT kCount = 0xFFFFFFFF;
    std::vector<std::string> paths;
    const UINT count = DragQueryFileW(drop, kCount, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        std::wstring path(size_t{DragQueryFileW(drop, i, nullptr, 0)} + 1, L'\0');
        path.resize(DragQueryFileW(drop, i, path.data(), static_cast<UINT>(path.size())));
        if (!path.empty()) paths.push_back(Utf8FromWide(path));
    }
    *place = {};
    DragQueryPoint(drop, place);
    ClientToScreen(window, place);
    DragFinish(drop);
    return paths;
}
