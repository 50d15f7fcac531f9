#include "windows/app/filmstrip.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <map>
#include <string>
#include <vector>

#include "animation/canvas_zoom.h"
#include "windows/app/played_document.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/ids/pane_ids.h"
#include "windows/services/screen_reader.h"
#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"

namespace {

// Pixels of a usual screen.
constexpr int kCellWidth = 112, kPictureWidth = 96, kPictureHeight = 60;
constexpr int kGap = 4;  // around the picture
constexpr int kMostEnlarged = 4;

constexpr int kHighestCell = 255;        // pixels that a list box takes
constexpr int kMostDpi = 3 * kUsualDpi;  // at which a cell is no higher
constexpr size_t kMostPictures = 256;
constexpr uint64_t kKeptBytes = uint64_t{16} << 20;
constexpr UINT_PTR kComposeTimer = 77;

struct Picture {
    int width = 0, height = 0;
    std::vector<uint32_t> pixels;  // as ScreenPicture has them; empty when it could not be composed
    unsigned version = 0;          // of the document that it was composed of
};

// There is one strip, as there is one window.
struct Filmstrip {
    const PlayedDocument* played = nullptr;
    unsigned version = 0;
    std::vector<uint32_t> times;  // of the frames that the strip has cells for
    std::map<int, Picture> pictures;
    int dpi = kUsualDpi;  // that cells and pictures are made for
    Composer composer{kKeptBytes};
    bool isComposing = false;
} strip;  // NOLINT(cert-err58-cpp): what is empty takes no memory

int Length(int usualPixels) {
    return ScaledTo(strip.dpi, usualPixels);
}

struct Range {
    int first, end;
};

// The cells that are in sight, also those that are so in part.
Range InSight(HWND box) {
    RECT client = {};
    GetClientRect(box, &client);
    const auto first = static_cast<int>(SendMessageW(box, LB_GETTOPINDEX, 0, 0));
    const int width = Length(kCellWidth), end = first + (client.right + width - 1) / width;
    return {first, std::min(end, static_cast<int>(strip.times.size()))};
}

bool HasPicture(int frame) {
    const auto found = strip.pictures.find(frame);
    return found != strip.pictures.end() && found->second.version == strip.version;
}

int NextToCompose(HWND box) {
    const Range sight = InSight(box);
    for (int frame = sight.first; frame < sight.end; ++frame)
        if (!HasPicture(frame)) return frame;
    return -1;
}

// Drops the pictures that are farthest from what is in sight.
void DropFarPictures(HWND box) {
    const Range sight = InSight(box);
    while (strip.pictures.size() > kMostPictures) {
        const auto last = std::prev(strip.pictures.end());
        const bool lastIsFarther = last->first - sight.end > sight.first - strip.pictures.begin()->first;
        strip.pictures.erase(lastIsFarther ? last : strip.pictures.begin());
    }
}

Picture Reduced(const CanvasView& canvas) {
    const int width = Length(kPictureWidth), height = Length(kPictureHeight);
    const Zoom zoom = ZoomToFit(canvas.width, canvas.height, width, height, Length(kMostEnlarged));
    Picture picture;
    picture.width = std::min(ZoomedSize(canvas.width, zoom), width);
    picture.height = std::min(ZoomedSize(canvas.height, zoom), height);
    picture.pixels.resize(static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height));
    DrawZoomed({picture.pixels.data(), picture.width, picture.height}, canvas, zoom, 0, 0, Length(kCheckPixels));
    return picture;
}

void RedrawCell(HWND box, int frame) {
    RECT place = {};
    if (SendMessageW(box, LB_GETITEMRECT, static_cast<WPARAM>(frame), reinterpret_cast<LPARAM>(&place)) != LB_ERR)
        InvalidateRect(box, &place, FALSE);
}

void StopComposing(HWND box) {
    KillTimer(box, kComposeTimer);
    strip.isComposing = false;
}

void ComposeSlice(HWND box) {
    const int frame = strip.played ? NextToCompose(box) : -1;
    if (frame < 0) return StopComposing(box);
    const Composed composed = strip.composer.Compose(*strip.played, static_cast<uint32_t>(frame));
    if (composed == Composed::kNotYet) return;
    Picture& picture = strip.pictures[frame] =
        composed == Composed::kReady ? Reduced(strip.composer.Canvas()) : Picture();
    picture.version = strip.version;
    DropFarPictures(box);
    RedrawCell(box, frame);
}

void CALLBACK OnComposeTimer(HWND box, UINT, UINT_PTR, DWORD) {
    try {
        ComposeSlice(box);
    } catch (const std::exception&) {  // memory has run out; no exception may cross the system's code
        StopComposing(box);
    }
}

void StartComposing(HWND box) {
    if (strip.isComposing || NextToCompose(box) < 0) return;
    strip.isComposing = SetTimer(box, kComposeTimer, USER_TIMER_MINIMUM, OnComposeTimer) != 0;
}

// "Frame 3, 0.10 s": what a cell says to the eye and to screen readers.
std::wstring CellText(size_t frame, uint32_t hundredths) {
    wchar_t text[64];
    swprintf(text, 64, L"Frame %u, %u.%02u s", static_cast<unsigned>(frame + 1), hundredths / 100, hundredths % 100);
    return text;
}

std::vector<uint32_t> TimesOf(const PlayedDocument& played) {
    std::vector<uint32_t> times;
    for (const Frame& frame : played.Played().Frames()) times.push_back(frame.length);
    return times;
}

void AddCell(HWND box, size_t frame, uint32_t time) {
    SendMessageW(box, LB_INSERTSTRING, frame, reinterpret_cast<LPARAM>(CellText(frame, time).c_str()));
}

// Gives the strip its cells. Those whose texts stay are left alone, so that it stays where it is scrolled to: a deleted
// frame mostly takes but the last one away, as the others are numbered anew.
void FillCells(HWND box, const std::vector<uint32_t>& times) {
    if (times.size() != strip.times.size()) strip.pictures.clear();  // those that stay would stand for other frames
    SendMessageW(box, WM_SETREDRAW, FALSE, 0);
    if (times.empty() || strip.times.empty()) SendMessageW(box, LB_RESETCONTENT, 0, 0);
    for (size_t count = strip.times.size(); count > times.size(); --count)
        SendMessageW(box, LB_DELETESTRING, count - 1, 0);
    for (size_t frame = 0; frame < times.size(); ++frame) {
        if (frame < strip.times.size()) {
            if (strip.times[frame] == times[frame]) continue;
            SendMessageW(box, LB_DELETESTRING, frame, 0);
        }
        AddCell(box, frame, times[frame]);
    }
    strip.times = times;
    SendMessageW(box, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(box, nullptr, TRUE);
}

void DrawPicture(HDC dc, const Picture& picture, const RECT& cell) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, picture.width, -picture.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    const int left = cell.left + (cell.right - cell.left - picture.width) / 2;
    const int top = cell.top + Length(kGap) + (Length(kPictureHeight) - picture.height) / 2;
    SetDIBitsToDevice(dc, left, top, static_cast<DWORD>(picture.width), static_cast<DWORD>(picture.height), 0, 0, 0,
                      static_cast<UINT>(picture.height), picture.pixels.data(), &info, DIB_RGB_COLORS);
}

void DrawCell(HDC dc, const RECT& cell, int frame, UINT state) {
    const bool isSelected = (state & ODS_SELECTED) != 0;
    FillRect(dc, &cell, GetSysColorBrush(isSelected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(isSelected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    RECT text = {cell.left, cell.top + Length(kPictureHeight) + 2 * Length(kGap), cell.right, cell.bottom};
    const auto index = static_cast<size_t>(frame);
    DrawTextW(dc, CellText(index, strip.times[index]).c_str(), -1, &text, DT_CENTER | DT_NOPREFIX | DT_SINGLELINE);
    const auto picture = strip.pictures.find(frame);
    if (picture != strip.pictures.end() && !picture->second.pixels.empty()) DrawPicture(dc, picture->second, cell);
    if (state & ODS_FOCUS) DrawFocusRect(dc, &cell);
}

constexpr ReadItems kReadCells = {
    .role = ROLE_SYSTEM_LISTITEM,
    .count = ReadLineCount,
    .name = ReadLineText,
    .place = ReadLinePlace,
    .selected = ReadSelectedLine,
    .select = SelectReadLine,
};
constexpr ReadWindow kReadStrip = {[](HWND) -> std::wstring { return L"Filmstrip"; }, ROLE_SYSTEM_LIST, &kReadCells};

}  // namespace

HWND CreateFilmstrip(HWND window) {
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_BORDER | WS_HSCROLL | WS_TABSTOP | LBS_NOTIFY | LBS_MULTICOLUMN |
                        LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT | LBS_DISABLENOSCROLL;
    HWND box = CreateWindowExW(0, L"listbox", L"Filmstrip", style, 0, 0, 0, 0, window,
                               reinterpret_cast<HMENU>(UINT_PTR{IDC_FILMSTRIP}), hInstance, nullptr);
    if (!box) return nullptr;
    SendMessageW(box, WM_SETFONT, reinterpret_cast<WPARAM>(hListFont), FALSE);
    TellReaders(box, kReadStrip);
    SendMessageW(box, LB_SETCOLUMNWIDTH, static_cast<WPARAM>(Length(kCellWidth)), 0);
    return box;
}

void PlaceFilmstrip(HWND box, const RECT& place) {
    if (const int dpi = std::min(DpiOf(box), kMostDpi); dpi != strip.dpi) {
        strip.dpi = dpi;
        strip.pictures.clear();
        SendMessageW(box, LB_SETCOLUMNWIDTH, static_cast<WPARAM>(Length(kCellWidth)), 0);
    }
    MoveWindow(box, place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
    RECT client = {};
    GetClientRect(box, &client);
    SendMessageW(box, LB_SETITEMHEIGHT, 0, std::clamp<int>(client.bottom, 1, kHighestCell));
    StartComposing(box);
}

void ShowInFilmstrip(HWND box, const PlayedDocument& played, int line) {
    if (!strip.played || strip.version != played.Version()) {
        strip.played = &played;
        strip.version = played.Version();
        FillCells(box, TimesOf(played));
        if (strip.times.empty()) strip.composer.Forget();
    }
    const int frame = played.FrameOfLine(line);
    if (frame != SelectedFrame(box)) SendMessageW(box, LB_SETCURSEL, static_cast<WPARAM>(frame), 0);
    StartComposing(box);
}

void DrawFilmstripCell(const DRAWITEMSTRUCT& item) {
    if (item.itemID >= strip.times.size()) return;
    const RECT& cell = item.rcItem;
    const int width = cell.right - cell.left, height = cell.bottom - cell.top;
    const MemoryDc memory(item.hDC);
    const OwnedGdiObject bitmap(CreateCompatibleBitmap(item.hDC, width, height));
    const auto frame = static_cast<int>(item.itemID);
    if (memory && bitmap) {
        const SelectedObject selected(memory.Get(), bitmap.Get());
        const SelectedObject font(memory.Get(), hListFont);
        DrawCell(memory.Get(), {0, 0, width, height}, frame, item.itemState);
        BitBlt(item.hDC, cell.left, cell.top, width, height, memory.Get(), 0, 0, SRCCOPY);
    } else {
        DrawCell(item.hDC, cell, frame, item.itemState);
    }
    StartComposing(item.hwndItem);
}

int SelectedFrame(HWND box) {
    return static_cast<int>(SendMessageW(box, LB_GETCURSEL, 0, 0));
}

bool IsFilmstripReady(HWND box) {
    return NextToCompose(box) < 0;
}

void ForgetFilmstrip() {
    strip = Filmstrip();
}
