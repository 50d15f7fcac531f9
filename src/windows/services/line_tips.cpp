#include "windows/services/line_tips.h"

#include <exception>
#include <memory>

#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"

namespace {

constexpr wchar_t kTipsProperty[] = L"KLM ZephyrLineTips";
constexpr int kWidestTip = 600;  // pixels of a usual screen
constexpr int kNoLine = -1;

// With the list as a property.
struct LineTips {
    WNDPROC own;  // the list's
    HWND tip;
    TipOfLine tipOf;
    int line = kNoLine;  // that the mouse is on
};

LineTips* TipsOf(HWND list) {
    return reinterpret_cast<LineTips*>(GetPropW(list, kTipsProperty));
}

// The list's one tool, which moves to the line under the mouse. Its size is the one that all systems take.
TTTOOLINFOW ToolOf(HWND list) {
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_SUBCLASS;
    tool.hwnd = list;
    tool.uId = 1;
    return tool;
}

int LineUnder(HWND list, LPARAM place) {
    const auto found = static_cast<DWORD>(SendMessageW(list, LB_ITEMFROMPOINT, 0, place));
    return HIWORD(found) ? kNoLine : LOWORD(found);
}

void OnMouseMove(HWND list, LineTips& tips, LPARAM place) {
    const int line = LineUnder(list, place);
    if (line == tips.line) return;
    tips.line = line;
    std::wstring text = line == kNoLine ? std::wstring() : tips.tipOf(list, line);
    TTTOOLINFOW tool = ToolOf(list);
    if (!text.empty())
        SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&tool.rect));
    tool.lpszText = text.data();
    SendMessageW(tips.tip, TTM_POP, 0, 0);
    SendMessageW(tips.tip, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageW(tips.tip, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
}

LRESULT CALLBACK TippedListProc(HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
    LineTips* tips = TipsOf(list);
    const WNDPROC own = tips->own;
    try {
        if (message == WM_MOUSEMOVE) OnMouseMove(list, *tips, lParam);
    } catch (const std::exception&) {  // memory has run out; no exception may cross the system's code
        tips->line = kNoLine;
    }
    if (message == LB_ADDSTRING || message == LB_DELETESTRING) tips->line = kNoLine;  // others are under the mouse now
    if (message == WM_NCDESTROY) {
        RemovePropW(list, kTipsProperty);
        delete tips;
    }
    return CallWindowProcW(own, list, message, wParam, lParam);
}

}  // namespace

void GiveLineTips(HWND list, TipOfLine tipOf) {
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
    HWND tip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, L"", WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0,
                               list, nullptr, hInstance, nullptr);
    if (!tip) return;
    TTTOOLINFOW tool = ToolOf(list);
    wchar_t nothing[] = L"";
    tool.lpszText = nothing;
    SendMessageW(tip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageW(tip, TTM_SETMAXTIPWIDTH, 0, ScaledFor(list, kWidestTip));
    auto tips = std::make_unique<LineTips>();
    tips->own = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(list, GWLP_WNDPROC));
    tips->tip = tip;
    tips->tipOf = tipOf;
    if (!SetPropW(list, kTipsProperty, tips.get())) return;
    tips.release();  // NOLINT(bugprone-unused-return-value): the list owns it
    SetWindowLongPtrW(list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(TippedListProc));
}
