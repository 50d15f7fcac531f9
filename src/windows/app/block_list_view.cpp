#include "windows/app/block_list_view.h"

#include <algorithm>
#include <string_view>

#include "gif/block_line.h"
#include "platform/wide_text_win32.h"
#include "windows/app/line_colours.h"
#include "windows/app/window_places.h"
#include "windows/ids/command_ids.h"
#include "windows/services/screen_reader.h"
#include "windows/services/screen_scale.h"
#include "windows/services/settings.h"
#include "windows/services/shell_objects.h"

namespace {

constexpr int kLineHeight = 16;    // what lists on usual screens give their lines
constexpr int kHighestLine = 255;  // that a list takes
int usualLineHeight = kLineHeight;

constexpr wchar_t kSeparator = static_cast<unsigned char>(kBlockLineSeparator);

HWND ListOf(HWND window) {
    return GetDlgItem(window, IDC_BLOCK_LIST);
}

// Keeps a window from redrawing for the length of a scope.
class FrozenWindow {
public:
    explicit FrozenWindow(HWND window) : window_(window) { SendMessageW(window_, WM_SETREDRAW, FALSE, 0); }
    ~FrozenWindow() { SendMessageW(window_, WM_SETREDRAW, TRUE, 0); }
    FrozenWindow(const FrozenWindow&) = delete;
    FrozenWindow& operator=(const FrozenWindow&) = delete;

private:
    HWND window_;
};

// Puts the line that is at the top of the list back there at the end of the scope, as far as the list still reaches.
class KeptScrollPlace {
public:
    explicit KeptScrollPlace(HWND list) : list_(list), top_(SendMessageW(list, LB_GETTOPINDEX, 0, 0)) {}
    ~KeptScrollPlace() {
        LRESULT last = SendMessageW(list_, LB_GETCOUNT, 0, 0) - 1;
        SendMessageW(list_, LB_SETTOPINDEX, static_cast<WPARAM>(std::min(top_, last)), 0);
    }
    KeptScrollPlace(const KeptScrollPlace&) = delete;
    KeptScrollPlace& operator=(const KeptScrollPlace&) = delete;

private:
    HWND list_;
    LRESULT top_;
};

void PutLine(HWND list, UINT message, int line, const Block& block) {
    const std::wstring text = WideFrom1252(FormatBlockLine(block));
    SendMessageW(list, message, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(text.c_str()));
}

void DrawPart(HDC dc, int x, int y, std::wstring_view text, COLORREF colour) {
    SetTextColor(dc, colour);
    TextOutW(dc, x, y, text.data(), static_cast<int>(text.size()));
}

int TextWidth(HDC dc, std::wstring_view text) {
    SIZE size = {};
    GetTextExtentPoint32W(dc, text.data(), static_cast<int>(text.size()), &size);
    return size.cx;
}

void DrawLineText(HDC dc, const RECT& place, std::wstring_view line, const LineColours& colours) {
    size_t split = line.find(kSeparator);
    std::wstring_view kind = line.substr(0, split);
    std::wstring_view details = split == std::wstring_view::npos ? std::wstring_view() : line.substr(split + 1);
    SetBkMode(dc, TRANSPARENT);
    DrawPart(dc, place.left, place.top, kind, colours.kind);
    DrawPart(dc, place.left + TextWidth(dc, kind), place.top, details, colours.details);
}

// The kind and the details as one would say them.
std::wstring SpokenLine(HWND list, int line) {
    std::wstring text = ReadLineText(list, line);
    if (const size_t split = text.find(kSeparator); split != std::wstring::npos) text[split] = L',';
    while (text.ends_with(L' ') || text.ends_with(L',')) text.pop_back();
    return text;
}

void EditLine(HWND list, int line) {
    SelectReadLine(list, line);
    PostMessageW(GetParent(list), WM_COMMAND, IDM_EDIT, 0);
}

constexpr ReadItems kReadLines = {
    .role = ROLE_SYSTEM_LISTITEM,
    .count = ReadLineCount,
    .name = SpokenLine,
    .place = ReadLinePlace,
    .selected = ReadSelectedLine,
    .select = SelectReadLine,
    .action = L"Edit",
    .act = EditLine,
};
constexpr ReadWindow kReadList = {[](HWND) -> std::wstring { return L"Blocks"; }, ROLE_SYSTEM_LIST, &kReadLines};

}  // namespace

void ShowPanesSoon(HWND window) {
    if (settings.preview || settings.filmstrip) PostMessageW(window, UM_SHOW_PANES, 0, 0);
}

void CreateBlockListView(HWND window) {
    const RECT place = PlacesIn(window).list;
    DWORD style = WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_BORDER | LBS_NOTIFY | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS;
    HWND list = CreateWindowExW(0, L"listbox", L"", style, place.left, place.top, place.right - place.left,
                                place.bottom - place.top, window, reinterpret_cast<HMENU>(UINT_PTR{IDC_BLOCK_LIST}),
                                hInstance, nullptr);
    if (list) TellReaders(list, kReadList);
    const auto own = static_cast<int>(SendMessageW(ListOf(window), LB_GETITEMHEIGHT, 0, 0));
    usualLineHeight = DpiOf(window) == kUsualDpi ? own : kLineHeight;
}

void ScaleBlockListView(HWND window) {
    HWND list = ListOf(window);
    const int height = std::min(ScaledFor(window, usualLineHeight), kHighestLine);
    if (SendMessageW(list, LB_GETITEMHEIGHT, 0, 0) != height) SendMessageW(list, LB_SETITEMHEIGHT, 0, height);
}

void FitBlockListView(HWND window) {
    const RECT place = PlacesIn(window).list;
    HWND list = ListOf(window);
    if (list) MoveWindow(list, place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
}

void FillBlockListView(HWND window, const BlockList* list) {
    HWND view = ListOf(window);
    {
        FrozenWindow frozen(view);
        KeptScrollPlace place(view);
        SendMessageW(view, LB_RESETCONTENT, 0, 0);
        for (uint32_t i = 0; list && i < list->count; ++i) PutLine(view, LB_ADDSTRING, 0, list->blocks[i]);
    }
    SetFocus(view);
    UpdateWindow(window);
    ShowPanesSoon(window);
}

void ReplaceHeaderLine(HWND window, const Block& header) {
    HWND view = ListOf(window);
    int selection = SelectedLine(window);
    FrozenWindow frozen(view);
    KeptScrollPlace place(view);
    if (SendMessageW(view, LB_DELETESTRING, 0, 0) != LB_ERR) PutLine(view, LB_INSERTSTRING, 0, header);
    if (selection != kNoLine) SelectLine(window, selection);
    ShowPanesSoon(window);
}

int SelectedLine(HWND window) {
    return static_cast<int>(SendMessageW(ListOf(window), LB_GETCURSEL, 0, 0));
}

void SelectLine(HWND window, int line) {
    SendMessageW(ListOf(window), LB_SETCURSEL, static_cast<WPARAM>(line), 0);
    ShowPanesSoon(window);
}

void ChooseLine(HWND window, int line) {
    SelectLine(window, line);
    RevealLine(window, line);
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(IDC_BLOCK_LIST, LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(ListOf(window)));
}

int LineAt(HWND window, POINT place) {
    HWND view = ListOf(window);
    ScreenToClient(view, &place);
    RECT client = {};
    GetClientRect(view, &client);
    if (!PtInRect(&client, place)) return kNoLine;
    const LRESULT height = std::max<LRESULT>(SendMessageW(view, LB_GETITEMHEIGHT, 0, 0), 1);
    const LRESULT line = SendMessageW(view, LB_GETTOPINDEX, 0, 0) + place.y / height;
    return line < SendMessageW(view, LB_GETCOUNT, 0, 0) ? static_cast<int>(line) : kNoLine;
}

POINT PlaceUnderLine(HWND window, int line) {
    HWND view = ListOf(window);
    RECT item = {};
    SendMessageW(view, LB_GETITEMRECT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&item));
    POINT place = {item.left, item.bottom};
    ClientToScreen(view, &place);
    return place;
}

void RevealLine(HWND window, int line) {
    HWND view = ListOf(window);
    RECT client = {};
    GetClientRect(view, &client);
    LRESULT lineHeight = std::max<LRESULT>(SendMessageW(view, LB_GETITEMHEIGHT, 0, 0), 1);
    LRESULT lines = std::max<LRESULT>(client.bottom / lineHeight, 1);  // that are seen whole
    LRESULT top = SendMessageW(view, LB_GETTOPINDEX, 0, 0);
    LRESULT wanted = std::clamp<LRESULT>(top, line - lines + 1, line);
    if (wanted != top) SendMessageW(view, LB_SETTOPINDEX, static_cast<WPARAM>(wanted), 0);
}

void DrawBlockLine(const DRAWITEMSTRUCT& item) {
    LRESULT length = SendMessageW(item.hwndItem, LB_GETTEXTLEN, item.itemID, 0);
    if (length < 0) return;
    std::wstring line(static_cast<size_t>(length), L'\0');
    if (SendMessageW(item.hwndItem, LB_GETTEXT, item.itemID, reinterpret_cast<LPARAM>(line.data())) < 0) return;
    const LineColours colours = ColoursOfLine((item.itemState & ODS_SELECTED) != 0);
    FillRect(item.hDC, &item.rcItem, colours.back);
    DrawLineText(item.hDC, item.rcItem, line, colours);
}
