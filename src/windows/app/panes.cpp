#include "windows/app/panes.h"

#include <windowsx.h>

#include <algorithm>
#include <exception>
#include <utility>

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
#include "windows/app/window_stops.h"
#include "windows/ids/command_ids.h"
#include "windows/ids/pane_ids.h"
#include "windows/services/front_procedure.h"
#include "windows/services/screen_reader.h"
#include "windows/services/screen_scale.h"
#include "windows/services/settings.h"

namespace {

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

bool HasPanes(HWND window) {
    return PreviewOf(window) || FilmstripOf(window);
}

bool IsOver(HWND pane, POINT at) {
    RECT place = {};
    return pane && GetWindowRect(pane, &place) && PtInRect(&place, at);
}

// Whether the key was one for the panes. What Space would type in the list is taken away, too.
bool TakesKey(HWND control, UINT message, WPARAM key) {
    if (message != WM_KEYDOWN && message != WM_CHAR) return false;
    HWND window = GetParent(control);
    if (TakesStopKey(window, message, key)) return true;
    HWND preview = PreviewOf(window);
    if (key != VK_SPACE || !preview) return false;
    if (message == WM_KEYDOWN) PlayOrStop(preview);
    return true;
}

bool TakesWheel(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_MOUSEWHEEL) return false;
    HWND preview = PreviewOf(GetParent(control));
    const POINT at = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    if (control == preview || !IsOver(preview, at)) return false;
    SendMessageW(preview, message, wParam, lParam);
    return true;
}

LRESULT CALLBACK PaneKeysProc(HWND control, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        if (TakesKey(control, message, wParam) || TakesWheel(control, message, wParam, lParam)) return 0;
    } catch (const std::exception&) {  // memory has run out; no exception may cross the system's code
        return 0;
    }
    return CallBehind(PaneKeysProc, control, message, wParam, lParam);
}

// Where the window was before it was made wider for the preview, and then; both empty when it was not.
struct Widening {
    RECT before, after;
} widening;

// The list beside a new preview would be too narrow for most lines in the smallest window.
void MakeRoom(HWND window) {
    RECT place = {}, free = {};
    GetWindowRect(window, &place);
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &free, 0);
    widening = {};
    const int roomy = ScaledFor(window, kRoomyWidth);
    if (IsZoomed(window) || IsIconic(window) || place.right - place.left >= roomy) return;
    const int width = std::min<int>(roomy, free.right - free.left);
    const int left = std::max<int>(std::min(place.left, free.right - width), free.left);
    if (width <= place.right - place.left) return;
    widening = {place, {left, place.top, left + width, place.bottom}};
    SetWindowPos(window, nullptr, left, place.top, width, place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

// Gives the room back, unless somebody has given the window another size since.
void GiveRoomBack(HWND window) {
    const Widening was = std::exchange(widening, {});
    RECT place = {};
    GetWindowRect(window, &place);
    const bool hasItsSize = place.right - place.left == was.after.right - was.after.left &&
                            place.bottom - place.top == was.after.bottom - was.after.top;
    if (IsRectEmpty(&was.after) || !hasItsSize || IsZoomed(window) || IsIconic(window)) return;
    const int left = place.left == was.after.left ? was.before.left : place.left;
    SetWindowPos(window, nullptr, left, place.top, was.before.right - was.before.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

constexpr ReadWindow kReadPreview = {[](HWND) { return std::wstring(); }, ROLE_SYSTEM_GRAPHIC};

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
    if (preview && !settings.preview) {
        RemovePane(window, preview);
        GiveRoomBack(window);
    }
    if (filmstrip && !settings.filmstrip) {
        RemovePane(window, filmstrip);
        ForgetFilmstrip();
    }
    if (!preview && settings.preview) {
        AddPane(CreatePreview(window));
        TellReaders(PreviewOf(window), kReadPreview);
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
    PutInFront(control, PaneKeysProc);
}
