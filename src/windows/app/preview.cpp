#include "windows/app/preview.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <memory>

#include "windows/app/preview_input.h"
#include "windows/app/preview_state.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/ids/pane_ids.h"
#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"

namespace {

constexpr wchar_t kPreviewClass[] = L"KLM ZephyrPreview";
constexpr int kTextLines = 3;
// Pixels of a usual screen.
constexpr int kGap = 4;   // around the text
constexpr int kDash = 4;  // of the outline

constexpr UINT_PTR kComposeTimer = 1;  // there is more to compose
constexpr UINT_PTR kBytesTimer = 2;    // the selection has come to rest: there is time to count bytes
constexpr UINT_PTR kPlayTimer = 3;     // the frame's time is over
constexpr UINT_PTR kPriceTimer = 4;    // the same: there is time to measure pixels
constexpr UINT kRestMilliseconds = 150;
constexpr uint64_t kMostBehind = 250;  // milliseconds; a player that is later than this does not try to catch up

constexpr wchar_t kTooLarge[] = L"This screen is too large for the preview; View plays it.";
constexpr wchar_t kNoMemory[] = L"There is not enough memory for the preview.";

uint64_t Milliseconds() {
    using namespace std::chrono;
    return static_cast<uint64_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

int LineHeight(HDC dc) {
    TEXTMETRICW metric = {};
    GetTextMetricsW(dc, &metric);
    return std::max<int>(metric.tmHeight, 1);
}

void FitView(HWND pane) {
    RECT client = {};
    GetClientRect(pane, &client);
    Preview& preview = *StateOfPreview(pane);
    const Animation* played = preview.played ? &preview.played->Played() : nullptr;
    preview.view.SetPlace(client.right, std::max<int>(client.bottom - PreviewTextHeight(pane), 0),
                          WholeFactor(DpiOf(pane)));
    preview.view.SetCanvas(played ? played->Width() : 0, played ? played->Height() : 0);
}

std::wstring Words(const Preview& preview) {
    if (preview.frame < 0) return kNothingToShow;
    const std::wstring text = DescribeLine(
        *preview.played,
        preview.isPlaying ? preview.played->LineOfFrame(static_cast<uint32_t>(preview.frame)) : preview.line,
        static_cast<uint32_t>(preview.frame), preview.bytes);
    return preview.isPlaying || preview.prices.Words().empty() ? text : text + L"\r\n" + preview.prices.Words();
}

// The words are the pane's name, too: that is what screen readers say.
void TellWords(HWND pane) {
    std::wstring name = L"Preview: " + Words(*StateOfPreview(pane));
    for (size_t at = name.find(L"\r\n"); at != std::wstring::npos; at = name.find(L"\r\n")) name.replace(at, 2, L"; ");
    SetWindowTextW(pane, name.c_str());
}

const wchar_t* TroubleOf(const Preview& preview, Composed composed) {
    if (preview.frame < 0) return kNothingToShow;
    if (!preview.played->FitsPane()) return kTooLarge;
    return composed == Composed::kFailed ? kNoMemory : nullptr;
}

void StopTimer(HWND pane, UINT_PTR timer) {
    KillTimer(pane, timer);
}

// One slice; the window lives on between two.
void ComposeOn(HWND pane) {
    Preview& preview = *StateOfPreview(pane);
    const Composed composed = preview.frame < 0
                                  ? Composed::kFailed
                                  : preview.composer.Compose(*preview.played, static_cast<uint32_t>(preview.frame));
    if (composed == Composed::kNotYet) {
        SetTimer(pane, kComposeTimer, USER_TIMER_MINIMUM, nullptr);
        return;
    }
    StopTimer(pane, kComposeTimer);
    preview.isComposed = true;
    preview.trouble = TroubleOf(preview, composed);
    if (preview.trouble) preview.composer.Forget();
    RedrawPreview(pane);
}

// What takes its time waits until the selection has come to rest.
void WaitForRest(HWND pane) {
    const Preview& preview = *StateOfPreview(pane);
    if (preview.isPlaying) return;
    SetTimer(pane, kBytesTimer, kRestMilliseconds, nullptr);
    if (preview.showsPrices && !preview.prices.HasPicture()) SetTimer(pane, kPriceTimer, kRestMilliseconds, nullptr);
}

void GoToFrame(HWND pane, int frame) {
    Preview& preview = *StateOfPreview(pane);
    preview.frame = frame;
    preview.isComposed = false;
    preview.bytes = kBytesNotCounted;
    preview.prices.Forget();
    WaitForRest(pane);
    TellWords(pane);
    ComposeOn(pane);
}

void CountBytes(HWND pane) {
    StopTimer(pane, kBytesTimer);
    Preview& preview = *StateOfPreview(pane);
    if (preview.frame < 0 || preview.isPlaying) return;
    preview.bytes = BytesOfFrame(*preview.played, static_cast<uint32_t>(preview.frame));
    TellWords(pane);
    RedrawPreview(pane);
}

// As long as the frame is being composed the timer comes again.
void MeasurePrices(HWND pane) {
    Preview& preview = *StateOfPreview(pane);
    const bool isWanted = preview.showsPrices && !preview.isPlaying && preview.frame >= 0;
    if (isWanted && !preview.isComposed) return;
    StopTimer(pane, kPriceTimer);
    if (!isWanted || preview.trouble) return;
    const Frame& frame = preview.played->Played().Frames()[static_cast<size_t>(preview.frame)];
    preview.prices.Make(preview.composer.Canvas(), preview.played->Blocks().blocks[frame.block]);
    TellWords(pane);
    RedrawPreview(pane);
}

void WaitForNextFrame(HWND pane) {
    Preview& preview = *StateOfPreview(pane);
    const uint64_t now = Milliseconds();
    const uint64_t length = uint64_t{preview.played->Played().Frames()[static_cast<size_t>(preview.frame)].length} * 10;
    if (now > preview.due + kMostBehind) preview.due = now;
    preview.due += length;
    SetTimer(pane, kPlayTimer, static_cast<UINT>(std::max<int64_t>(static_cast<int64_t>(preview.due - now), 1)),
             nullptr);
}

void StopPlaying(HWND pane) {
    StateOfPreview(pane)->isPlaying = false;
    StopTimer(pane, kPlayTimer);
}

void StopHere(HWND pane) {
    StopPlaying(pane);
    ChoosePreviewFrame(pane, StateOfPreview(pane)->frame);
    WaitForRest(pane);
    TellWords(pane);
    RedrawPreview(pane);
}

// Whether the user is about to do something with the line that is selected: in a menu, in a dialog or by dragging.
bool IsLineInUse(HWND pane) {
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    const bool isKnown = GetGUIThreadInfo(GetCurrentThreadId(), &thread) != FALSE;
    const bool isInMenu = isKnown && (thread.flags & (GUI_INMENUMODE | GUI_POPUPMENUMODE)) != 0;
    return isInMenu || GetCapture() || !IsWindowEnabled(GetParent(pane));
}

// At the end of the last play, which waits while another line must not be chosen.
void EndPlaying(HWND pane) {
    if (IsLineInUse(pane))
        SetTimer(pane, kPlayTimer, kRestMilliseconds, nullptr);
    else
        StopHere(pane);
}

void OnFrameOver(HWND pane) {
    Preview& preview = *StateOfPreview(pane);
    StopTimer(pane, kPlayTimer);
    if (!preview.isPlaying) return;
    if (!preview.isComposed) return WaitForNextFrame(pane);  // it is late: it is shown as soon as it is there
    const int count = static_cast<int>(preview.played->FrameCount());
    const bool isLast = preview.frame + 1 == count;
    if (isLast && preview.playsLeft == 1) return EndPlaying(pane);
    if (isLast && preview.playsLeft > 1) --preview.playsLeft;
    GoToFrame(pane, isLast ? 0 : preview.frame + 1);
    WaitForNextFrame(pane);
}

LRESULT OnTimer(HWND pane, WPARAM timer) {
    if (timer == kComposeTimer) ComposeOn(pane);
    if (timer == kBytesTimer) CountBytes(pane);
    if (timer == kPlayTimer) OnFrameOver(pane);
    if (timer == kPriceTimer) MeasurePrices(pane);
    return 0;
}

// The pixels of a pane while it is painted: all of it is drawn before any of it is seen.
class PaneBuffer {
public:
    PaneBuffer(HDC dc, int width, int height)
        : width_(width), height_(height), dc_(dc), bitmap_(MakePixels(dc)), selected_(dc_.Get(), bitmap_.Get()) {}
    explicit operator bool() const { return dc_ && bitmap_ && selected_; }
    HDC Dc() const { return dc_.Get(); }
    ScreenPicture Picture() const { return {static_cast<uint32_t*>(pixels_), width_, height_}; }

private:
    HBITMAP MakePixels(HDC dc) {
        BITMAPINFO info = {};
        info.bmiHeader = {sizeof info.bmiHeader, width_, -height_, 1, 32, BI_RGB, 0, 0, 0, 0, 0};  // rows from the top
        return CreateDIBSection(dc, &info, DIB_RGB_COLORS, &pixels_, nullptr, 0);
    }

    int width_, height_;
    void* pixels_ = nullptr;
    MemoryDc dc_;
    OwnedGdiObject bitmap_;
    SelectedObject selected_;
};

// Dashes in black and white, which show on every picture.
void DrawOutline(const ScreenPicture& picture, int bottom, const RECT& outline, int dash) {
    auto put = [&](LONG x, LONG y) {
        if (x < 0 || y < 0 || x >= picture.width || y >= bottom) return;
        picture.Row(y)[x] = (x + y) / dash % 2 == 0 ? 0x000000 : 0xFFFFFF;
    };
    const LONG left = std::max(outline.left, -1L), right = std::min<LONG>(outline.right, picture.width + 1);
    for (LONG x = left; x < right; ++x) put(x, outline.top), put(x, outline.bottom - 1);
    for (LONG y = std::max(outline.top, -1L); y < std::min<LONG>(outline.bottom, bottom + 1); ++y)
        put(outline.left, y), put(outline.right - 1, y);
}

void DrawCanvas(HWND pane, const ScreenPicture& picture, int height) {
    const Preview& preview = *StateOfPreview(pane);
    const ScreenPicture place = {picture.pixels, picture.width, height};
    const POINT corner = preview.view.Corner();
    const bool showsPrices = preview.prices.HasPicture() && !preview.isPlaying;
    const CanvasView& canvas = showsPrices ? preview.prices.Picture() : preview.composer.Canvas();
    DrawZoomed(place, canvas, preview.view.CurrentZoom(), corner.x, corner.y, ScaledFor(pane, kCheckPixels));
    if (preview.isPlaying || !preview.isComposed) return;
    const struct Rectangle area = AreaOfLine(*preview.played, preview.line, static_cast<uint32_t>(preview.frame));
    if (!area.IsEmpty()) DrawOutline(place, height, preview.view.Around(area), ScaledFor(pane, kDash));
}

void DrawWords(const Preview& preview, HDC dc, RECT place, int gap) {
    InflateRect(&place, -gap, -gap);
    DrawTextW(dc, Words(preview).c_str(), -1, &place, DT_LEFT | DT_NOPREFIX);
    if (preview.trouble) return;
    const Zoom zoom = preview.view.CurrentZoom();
    const std::wstring text = std::to_wstring(zoom.enlarge) + L":" + std::to_wstring(zoom.reduce);
    DrawTextW(dc, text.c_str(), -1, &place, DT_RIGHT | DT_NOPREFIX | DT_SINGLELINE);
}

void DrawPane(HWND pane, const PaneBuffer& buffer, const RECT& client) {
    const Preview& preview = *StateOfPreview(pane);
    const int height = std::max<int>(client.bottom - PreviewTextHeight(pane), 0), gap = ScaledFor(pane, kGap);
    SelectedObject font(buffer.Dc(), hListFont);
    SetBkMode(buffer.Dc(), TRANSPARENT);
    SetTextColor(buffer.Dc(), GetSysColor(COLOR_BTNTEXT));
    FillRect(buffer.Dc(), &client, GetSysColorBrush(COLOR_BTNFACE));
    GdiFlush();  // from here on the pixels are written directly
    RECT words = {0, height, client.right, client.bottom}, place = {gap, gap, client.right - gap, height};
    if (preview.trouble)
        DrawTextW(buffer.Dc(), preview.trouble, -1, &place, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
    else
        DrawCanvas(pane, buffer.Picture(), height);
    if (preview.frame >= 0) DrawWords(preview, buffer.Dc(), words, gap);
    if (GetFocus() == pane) DrawFocusRect(buffer.Dc(), &client);
}

LRESULT PaintTo(HWND pane, HDC dc) {
    RECT client = {};
    GetClientRect(pane, &client);
    if (client.right <= 0 || client.bottom <= 0) return 0;
    const PaneBuffer buffer(dc, client.right, client.bottom);
    if (!buffer) return 0;
    DrawPane(pane, buffer, client);
    BitBlt(dc, 0, 0, client.right, client.bottom, buffer.Dc(), 0, 0, SRCCOPY);
    return 0;
}

LRESULT OnPaint(HWND pane) {
    const WindowPaint paint(pane);
    return PaintTo(pane, paint.Dc());
}

LRESULT OnSize(HWND pane) {
    FitView(pane);
    RedrawPreview(pane);
    return 0;
}

LRESULT OnDestroy(HWND pane) {
    delete StateOfPreview(pane);
    SetWindowLongPtrW(pane, GWLP_USERDATA, 0);
    return 0;
}

LRESULT Dispatch(HWND pane, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: return OnPaint(pane);
        case WM_PRINTCLIENT: return PaintTo(pane, reinterpret_cast<HDC>(wParam));
        case WM_ERASEBKGND: return 1;
        case WM_SIZE: return OnSize(pane);
        case WM_TIMER: return OnTimer(pane, wParam);
        case WM_SETFOCUS:
        case WM_KILLFOCUS: return RedrawPreview(pane), 0;
        case WM_NCDESTROY: return OnDestroy(pane);
        default: return OnPreviewInput(pane, message, wParam, lParam);
    }
}

LRESULT CALLBACK PreviewProc(HWND pane, UINT message, WPARAM wParam, LPARAM lParam) {
    if (!StateOfPreview(pane)) return DefWindowProcW(pane, message, wParam, lParam);
    try {
        return Dispatch(pane, message, wParam, lParam);
    } catch (const std::exception&) {  // memory has run out; no exception may cross the system's code
        return 0;
    }
}

void RegisterPreviewClass() {
    WNDCLASSW about = {};
    about.style = CS_HREDRAW | CS_VREDRAW;
    about.lpfnWndProc = PreviewProc;
    about.hInstance = hInstance;
    about.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    about.lpszClassName = kPreviewClass;
    RegisterClassW(&about);  // answers 0 from the second time on
}

}  // namespace

Preview* StateOfPreview(HWND pane) {
    return reinterpret_cast<Preview*>(GetWindowLongPtrW(pane, GWLP_USERDATA));
}

void RedrawPreview(HWND pane) {
    InvalidateRect(pane, nullptr, FALSE);
}

int PreviewTextHeight(HWND pane) {
    WindowDc dc(pane);
    SelectedObject font(dc.Get(), hListFont);
    const int lines = kTextLines + (StateOfPreview(pane)->showsPrices ? 1 : 0);
    return lines * LineHeight(dc.Get()) + 2 * ScaledFor(pane, kGap);
}

void ChoosePreviewFrame(HWND pane, int frame) {
    ChooseLine(GetParent(pane), StateOfPreview(pane)->played->LineOfFrame(static_cast<uint32_t>(frame)));
}

void SwitchPreviewPrices(HWND pane) {
    Preview& preview = *StateOfPreview(pane);
    preview.showsPrices = !preview.showsPrices;
    preview.prices.Forget();
    FitView(pane);
    WaitForRest(pane);
    TellWords(pane);
    RedrawPreview(pane);
}

HWND CreatePreview(HWND window) {
    RegisterPreviewClass();
    auto state = std::make_unique<Preview>();
    HWND pane = CreateWindowExW(0, kPreviewClass, L"Preview", WS_CHILD | WS_VISIBLE | WS_BORDER | WS_TABSTOP, 0, 0, 0,
                                0, window, reinterpret_cast<HMENU>(UINT_PTR{IDC_PREVIEW}), hInstance, nullptr);
    if (pane) SetWindowLongPtrW(pane, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(state.release()));
    return pane;  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the window owns its state
}

void FitPreview(HWND pane, const RECT& place) {
    MoveWindow(pane, place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
    OnSize(pane);  // the font may be another one while the size is the same
}

void ShowInPreview(HWND pane, const PlayedDocument& played, int line) {
    Preview& preview = *StateOfPreview(pane);
    const bool isSame = preview.played && preview.version == played.Version();
    if (isSame && preview.line == line) return;
    StopPlaying(pane);
    preview.played = &played;
    preview.version = played.Version();
    preview.line = line;
    FitView(pane);
    const int frame = played.FrameOfLine(line);
    if (!isSame && frame < 0) preview.composer.Forget();
    if (!isSame || frame != preview.frame) return GoToFrame(pane, frame);
    TellWords(pane);
    RedrawPreview(pane);
}

void PlayOrStop(HWND pane) {
    Preview& preview = *StateOfPreview(pane);
    if (preview.isPlaying) return StopHere(pane);
    if (preview.frame < 0 || preview.trouble) return;
    preview.isPlaying = true;
    preview.playsLeft = preview.played->Played().Plays();
    preview.due = Milliseconds();
    // From the last frame it would be over at once.
    if (preview.frame + 1 == static_cast<int>(preview.played->FrameCount())) GoToFrame(pane, 0);
    TellWords(pane);
    RedrawPreview(pane);
    WaitForNextFrame(pane);
}

bool IsPlaying(HWND pane) {
    return StateOfPreview(pane)->isPlaying;
}

bool IsPreviewReady(HWND pane) {
    const Preview& preview = *StateOfPreview(pane);
    return preview.isComposed && !preview.isPlaying && (!preview.showsPrices || !preview.prices.Words().empty());
}
