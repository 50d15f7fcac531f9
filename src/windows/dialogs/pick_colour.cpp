#include "windows/dialogs/pick_colour.h"

#include <algorithm>
#include <exception>
#include <optional>

#include "editing/block_queries.h"
#include "gif/descriptor.h"
#include "windows/dialogs/scoped_value.h"
#include "windows/drawing/draw_image.h"
#include "windows/drawing/enlargement.h"
#include "windows/drawing/full_screen.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/services/screen_reader.h"
#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"

namespace {

constexpr wchar_t kClassName[] = L"KLM ZephyrSelect";
constexpr WPARAM kEnterKey = 13;
constexpr WPARAM kEscapeKey = 27;

// What the eyedropper works on while it runs.
struct Eyedropper {
    Block image;
    uint32_t picked = kNoPixel;  // until a pixel is
};
Eyedropper eyedropper;

// The colours that the image is seen in; none when neither it nor its document brings any, and its bitmap's count.
std::optional<Palette> FindColours(const Block& image) {
    if (GetImageFields(image).packed & kHasPalette) return image.palette;
    GlobalPalette global = image.owner ? FindGlobalPalette(*image.owner) : GlobalPalette();
    return global.depth ? std::optional(global.colours) : std::nullopt;
}

// As after every drawing in given colours the bitmap in the document has them, and later drawings find them there.
void GiveColours(const Block& image) {
    std::optional<Palette> palette = FindColours(image);
    if (!palette || !image.owner) return;
    std::span<Block> blocks = image.owner->All();
    auto shown = std::ranges::find(blocks, image.data, &Block::data);
    if (shown != blocks.end()) AdoptColours(&shown->data, *palette);
}

LRESULT OnPaint(HWND window) {
    std::optional<Palette> palette = FindColours(eyedropper.image);
    WindowPaint paint(window);
    SavedDc saved(paint.Dc());
    Enlarge(paint.Dc(), window);
    DrawImageStraight(paint.Dc(), &eyedropper.image.data, palette ? palette->Colours() : nullptr,
                      GetScrollPos(window, SB_HORZ), GetScrollPos(window, SB_VERT));
    return 0;
}

// Ends the picking. The owner takes input again before the window goes, so that Windows activates it and no stranger.
LRESULT Finish(HWND window, uint32_t picked) {
    eyedropper.picked = picked;
    EnableWindow(GetWindow(window, GW_OWNER), TRUE);
    DestroyWindow(window);
    return 0;
}

LRESULT OnPick(HWND window, int x, int y) {
    const int factor = EnlargementOf(window);
    x /= factor, y /= factor;
    uint32_t pixel = kNoPixel;
    {
        ImageLock bitmap(eyedropper.image.data);
        if (bitmap) pixel = GetImagePixel(bitmap, x + GetScrollPos(window, SB_HORZ), y + GetScrollPos(window, SB_VERT));
    }
    return pixel == kNoPixel ? 0 : Finish(window, pixel);
}

// Its window may be destroyed by what another thread sends: the loop, which waits for messages, has to see it.
LRESULT OnDestroy(HWND window) {
    ForgetDpi(window);
    PostMessageW(nullptr, WM_NULL, 0, 0);
    return 0;
}

LRESULT OnDpiChanged(HWND window, int dpi) {
    NoteDpi(window, dpi);
    InvalidateRect(window, nullptr, TRUE);
    return 0;
}

LRESULT Dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: return OnPaint(window);
        case WM_LBUTTONUP: return OnPick(window, LOWORD(lParam), HIWORD(lParam));
        case WM_RBUTTONUP:
        case WM_CLOSE: return Finish(window, kNoPixel);
        case WM_CHAR:
            if (wParam == kEnterKey || wParam == kEscapeKey) return Finish(window, kNoPixel);
            break;
        case WM_PALETTECHANGED: return InvalidateRect(window, nullptr, FALSE), 0;
        case kDpiChanged: return OnDpiChanged(window, LOWORD(wParam));
        case WM_DESTROY: return OnDestroy(window);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK EyedropperProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        return Dispatch(window, message, wParam, lParam);
    } catch (const std::exception&) {  // memory has run out; no exception may cross the system's code
        return 0;
    }
}

// The window class, registered for one use.
class EyedropperClass {
public:
    EyedropperClass() {
        WNDCLASSW about = {};
        about.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
        about.lpfnWndProc = EyedropperProc;
        about.hInstance = hInstance;
        about.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
        about.hCursor = LoadCursorW(hInstance, L"EyeDropper");
        about.hbrBackground = static_cast<HBRUSH>(GetStockObject(LTGRAY_BRUSH));
        about.lpszClassName = kClassName;
        RegisterClassW(&about);
    }
    ~EyedropperClass() { UnregisterClassW(kClassName, hInstance); }
    EyedropperClass(const EyedropperClass&) = delete;
    EyedropperClass& operator=(const EyedropperClass&) = delete;
};

// A request to quit is somebody else's and is passed on: the window has then to go without a pixel.
void RunUntilClosed(HWND window) {
    MSG message = {};
    while (IsWindow(window)) {
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
            PostQuitMessage(static_cast<int>(message.wParam));
            Finish(window, kNoPixel);
            return;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

constexpr ReadWindow kReadPicking = {
    [](HWND) -> std::wstring { return L"Click the colour in the image. Escape leaves it as it is."; }};

bool Pick(HWND parent) {
    EyedropperClass windowClass;
    EnableWindow(parent, FALSE);
    HWND window = ShowFullScreen(parent, kClassName, 0, nullptr);
    TellReaders(window, kReadPicking);
    if (window) RunUntilClosed(window);
    EnableWindow(parent, TRUE);
    return window != nullptr;
}

}  // namespace

bool PickColourFromImage(HWND parent, const Block& image, uint32_t* index) {
    if (!image.data) return false;
    GiveColours(image);
    ScopedValue<Eyedropper> running(&eyedropper, {image, kNoPixel});
    const bool shown = Pick(parent);
    if (shown) *index = eyedropper.picked;
    if (parent) UpdateWindow(parent);
    return shown && eyedropper.picked != kNoPixel;
}
