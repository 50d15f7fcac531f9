#include "windows/dialogs/findings_dialog.h"

#include <algorithm>

#include "platform/wide_text_win32.h"
#include "windows/dialogs/dialog_frame.h"
#include "windows/dialogs/edited_block.h"
#include "windows/ids/tool_ids.h"
#include "windows/services/shell_objects.h"

namespace {

std::wstring TextOf(const FoundPlace& place) {
    const std::wstring where = place.line < 0 ? L"File" : L"Line " + std::to_wstring(place.line + 1);
    return where + L": " + WideFrom1252(place.text);
}

// Lets the list be scrolled to the ends of its texts.
void FitWidth(HWND list, const std::vector<FoundPlace>& places) {
    HDC dc = GetDC(list);
    HGDIOBJ previous = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(list, WM_GETFONT, 0, 0)));
    LONG widest = 0;
    for (const FoundPlace& place : places) {
        const std::wstring text = TextOf(place);
        SIZE size = {};
        GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
        widest = std::max(widest, size.cx);
    }
    SelectObject(dc, previous);
    ReleaseDC(list, dc);
    widest += GetSystemMetrics(SM_CXVSCROLL);
    SendMessageW(list, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest), 0);
}

bool ShowPlaces(HWND dialog) {
    const auto& request = *Edited<FindingsRequest>(dialog);
    HWND list = GetDlgItem(dialog, IDC_FINDINGS_LIST);
    for (const FoundPlace& place : request.places)
        if (SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(TextOf(place).c_str())) < 0) return false;
    FitWidth(list, request.places);
    SetFocus(list);
    return true;
}

void OnSelection(HWND dialog) {
    const auto& request = *Edited<FindingsRequest>(dialog);
    const LRESULT selected = SendDlgItemMessageW(dialog, IDC_FINDINGS_LIST, LB_GETCURSEL, 0, 0);
    if (selected < 0) return;
    const FoundPlace& place = request.places[static_cast<size_t>(selected)];
    SetDlgItemTextW(dialog, IDC_FINDINGS_TEXT, TextOf(place).c_str());
    if (place.line >= 0) request.choose(place.line);
}

INT_PTR OnPlacesMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    if (message != WM_COMMAND || LOWORD(wParam) != IDC_FINDINGS_LIST) return FALSE;
    if (HIWORD(wParam) == LBN_SELCHANGE) OnSelection(dialog);
    if (HIWORD(wParam) == LBN_DBLCLK) EndDialog(dialog, 0);
    return TRUE;
}

// Beside its owner, where there is room: the line that is selected there is to be seen.
void PlaceBeside(HWND dialog) {
    RECT own = {}, other = {};
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetWindowRect(dialog, &own);
    GetWindowRect(GetWindow(dialog, GW_OWNER), &other);
    if (!GetMonitorInfoW(MonitorFromWindow(dialog, MONITOR_DEFAULTTONEAREST), &monitor)) return;
    const RECT& free = monitor.rcWork;
    const LONG width = own.right - own.left, height = own.bottom - own.top;
    LONG left = std::max(free.right - width, free.left);
    if (other.right + width <= free.right)
        left = other.right;
    else if (other.left - width >= free.left)
        left = other.left - width;
    const LONG top = std::max(std::min(other.top, free.bottom - height), free.top);
    SetWindowPos(dialog, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

constexpr DialogKind kFindingsDialog = {
    .templateName = L"FindingsBox",
    .helpKeyword = "KLMCheck",
    .show = ShowPlaces,
    .onMessage = OnPlacesMessage,
    .place = PlaceBeside,
};

}  // namespace

void ShowFindings(HWND owner, FindingsRequest* request) {
    RunEditingDialog(owner, kFindingsDialog, request);
}
