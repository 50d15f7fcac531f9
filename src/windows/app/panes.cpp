#include "windows/app/panes.h"

#include <windowsx.h>

#include <algorithm>
#include <array>
#include <exception>

#include "windows/app/block_list_view.h"
#include "windows/app/edit_menu.h"
#include "windows/app/filmstrip.h"
#include "windows/app/notice_strip.h"
#include "windows/app/options.h"
#include "windows/app/played_document.h"
#include "windows/app/preview.h"
#include "windows/app/recent_files.h"
#include "windows/app/shell_state.h"
#include "windows/app/window_places.h"
#include "windows/ids/command_ids.h"
#include "windows/ids/pane_ids.h"
#include "windows/services/screen_scale.h"
#include "windows/services/settings.h"

namespace {

constexpr wchar_t kOwnProcedure[] = L"KLM ZephyrOwnProcedure";  // the property that keeps a control's own

// The width that the window gets when the preview comes, in pixels of a usual screen: room for the list's lines and a
// picture beside them.
constexpr int kRoomyWidth = 760;

PlayedDocument played;

HWND PreviewOf(HWND window) {
    return GetDlgItem(window, IDC_PREVIEW);
}

HWND FilmstripOf(HWND window) {
    return GetDlgItem(window, IDC_FILMSTRIP);
}

// Between which Tab goes, in this order.
constexpr std::array kStops = {IDC_BLOCK_LIST, IDC_PREVIEW, IDC_FILMSTRIP};

bool HasPanes(HWND window) {
    return PreviewOf(window) || FilmstripOf(window);
}

void FocusNextStop(HWND control, bool back) {
    HWND window = GetParent(control);
    const auto from = std::ranges::find(kStops, GetDlgCtrlID(control)) - kStops.begin();
    const auto count = std::ssize(kStops);
    for (auto step = 1; step < count; ++step)
        if (HWND stop =
                GetDlgItem(window, kStops[static_cast<size_t>((from + (back ? count - step : step)) % count)])) {
            SetFocus(stop);
            return;
        }
}

bool IsOver(HWND pane, POINT at) {
    RECT place = {};
    return pane && GetWindowRect(pane, &place) && PtInRect(&place, at);
}

// Whether the key was one for the panes. What Tab and Space would type in the list is taken away, too.
bool TakesKey(HWND control, UINT message, WPARAM key) {
    HWND window = GetParent(control), preview = PreviewOf(window);
    if (message != WM_KEYDOWN && message != WM_CHAR) return false;
    if (!HasPanes(window) || (key != VK_TAB && (key != VK_SPACE || !preview))) return false;
    if (message == WM_CHAR) return true;
    key == VK_TAB ? FocusNextStop(control, GetKeyState(VK_SHIFT) < 0) : PlayOrStop(preview);
    return true;
}

bool TakesWheel(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND preview = PreviewOf(GetParent(control));
    const POINT at = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    if (message != WM_MOUSEWHEEL || control == preview || !IsOver(preview, at)) return false;
    SendMessageW(preview, message, wParam, lParam);
    return true;
}

LRESULT CALLBACK PaneKeysProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    auto own = reinterpret_cast<WNDPROC>(GetPropW(control, kOwnProcedure));
    try {
        if (TakesKey(control, message, wParam) || TakesWheel(control, message, wParam, lParam)) return 0;
    } catch (const std::exception&) {  // memory has run out; no exception may cross the system's code
        return 0;
    }
    if (message == WM_NCDESTROY) RemovePropW(control, kOwnProcedure);
    return CallWindowProcW(own, control, message, wParam, lParam);
}

// The list beside a new preview would be too narrow for most lines in the smallest window.
void MakeRoom(HWND window) {
    RECT place = {}, free = {};
    GetWindowRect(window, &place);
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &free, 0);
    const int roomy = ScaledFor(window, kRoomyWidth);
    if (IsZoomed(window) || IsIconic(window) || place.right - place.left >= roomy) return;
    const int width = std::min<int>(roomy, free.right - free.left);
    const int left = std::max<int>(std::min(place.left, free.right - width), free.left);
    if (width > place.right - place.left)
        SetWindowPos(window, nullptr, left, place.top, width, place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void AddPane(HWND pane) {
    if (!pane) return;
    PassEditKeys(pane);
    PassPaneKeys(pane);
}

// The focus must not go with the pane.
void RemovePane(HWND window, HWND pane) {
    if (GetFocus() == pane) SetFocus(GetDlgItem(window, IDC_BLOCK_LIST));
    DestroyWindow(pane);
}

void AddAndRemovePanes(HWND window) {
    HWND preview = PreviewOf(window), filmstrip = FilmstripOf(window);
    if (preview && !settings.preview) RemovePane(window, preview);
    if (filmstrip && !settings.filmstrip) {
        RemovePane(window, filmstrip);
        ForgetFilmstrip();
    }
    if (!preview && settings.preview) {
        AddPane(CreatePreview(window));
        MakeRoom(window);
    }
    if (!filmstrip && settings.filmstrip) {
        ForgetFilmstrip();
        AddPane(CreateFilmstrip(window));
    }
}

}  // namespace

void ApplyOptions(HWND window) {
    ShowOptions(window);
    ShowRecentFiles(window);
    AddAndRemovePanes(window);
    FitBlockListView(window);
    FitNotice(window);
    FitPanes(window);
    InvalidateRect(GetDlgItem(window, IDC_BLOCK_LIST), nullptr, TRUE);
    ShowPanes(window);
}

void ClosePanes(HWND window) {
    for (HWND pane : {PreviewOf(window), FilmstripOf(window)})
        if (pane) RemovePane(window, pane);
    ForgetFilmstrip();
    played.Take(BlockList());
}

void FitPanes(HWND window) {
    const WindowPlaces places = PlacesIn(window);
    if (HWND preview = PreviewOf(window)) FitPreview(preview, places.preview);
    if (HWND filmstrip = FilmstripOf(window)) PlaceFilmstrip(filmstrip, places.filmstrip);
}

void ShowPanes(HWND window) {
    HWND preview = PreviewOf(window), filmstrip = FilmstripOf(window);
    const BlockList nothing;
    played.Take(HasPanes(window) ? document : nothing);
    const int line = SelectedLine(window);
    if (preview) ShowInPreview(preview, played, line);
    if (filmstrip) ShowInFilmstrip(filmstrip, played, line);
}

void OnFilmstripNotification(HWND window, int notification) {
    const int frame = notification == LBN_SELCHANGE ? SelectedFrame(FilmstripOf(window)) : -1;
    if (frame >= 0 && frame < static_cast<int>(played.FrameCount()))
        ChooseLine(window, played.LineOfFrame(static_cast<uint32_t>(frame)));
}

void PassPaneKeys(HWND control) {
    const LONG_PTR own = GetWindowLongPtrW(control, GWLP_WNDPROC);
    if (SetPropW(control, kOwnProcedure, reinterpret_cast<HANDLE>(own)))
        SetWindowLongPtrW(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(PaneKeysProc));
}
