// The viewer's window and its message loop.
#include <exception>

#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/drawing/full_screen.h"
#include "windows/drawing/gdi_guards.h"
#include "windows/services/messages.h"
#include "windows/services/screen_reader.h"
#include "windows/services/screen_scale.h"
#include "windows/services/shell_objects.h"
#include "windows/viewer/viewer.h"
#include "windows/viewer/viewer_state.h"

namespace {

// Nothing resets what a control block says: it is in force for all images up to the next one.
constexpr bool kQuirkControlStaysInForce = true;

constexpr int kQuirkClickCommand = 13;  // what a left click sends; nobody acts on it

// Puts the wait of an outer viewing back.
class NestedWait {
public:
    NestedWait() : outer_(pendingWait) {}
    ~NestedWait() { pendingWait = outer_; }
    NestedWait(const NestedWait&) = delete;
    NestedWait& operator=(const NestedWait&) = delete;

private:
    int32_t outer_;
};

LRESULT Default(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT OnCreate(HWND window, const CREATESTRUCTW* creation) {
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    pendingWait = 0;
    PostMessageW(window, WM_VIEWER_NEXT, 0, 0);
    return 0;
}

// A viewing inside another one shares the window class, but not the background.
LRESULT OnEraseBackground(HWND window, HDC dc, const ViewerState& state) {
    RECT client;
    GetClientRect(window, &client);
    FillRect(dc, &client, state.backgroundBrush);
    return 1;
}

LRESULT OnPaint(HWND window, WPARAM wParam, LPARAM lParam, ViewerState& state) {
    if (state.currentImage) {
        WindowPaint paint(window);
        PaintCurrentImage(paint.Dc(), window, state);
    }
    return Default(window, WM_PAINT, wParam, lParam);
}

LRESULT OnDispose(HWND window, ViewerState& state) {
    DisposeOfImage(window, state);
    if (!kQuirkControlStaysInForce) {
        state.transparentIndex = kNoTransparentIndex;
        state.disposal = state.delay = state.waitForInput = 0;
    }
    PostMessageW(window, WM_VIEWER_NEXT, 0, 0);
    return 0;
}

LRESULT OnChar(HWND window, WPARAM character, const ViewerState& state) {
    if (character == VK_ESCAPE)
        SendMessageW(window, WM_COMMAND, IDCANCEL, 0);
    else if (state.waitForInput)
        pendingWait = 0;
    return 0;
}

LRESULT OnButton(HWND window, UINT message, WPARAM wParam, LPARAM lParam, int command) {
    SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
    return Default(window, message, wParam, lParam);
}

LRESULT OnCommand(HWND window, WPARAM wParam, LPARAM lParam) {
    if (LOWORD(wParam) != IDCANCEL) return Default(window, WM_COMMAND, wParam, lParam);
    SendMessageW(window, WM_CLOSE, 0, 0);
    return 0;
}

// What was grabbed from the screen has the size of before.
LRESULT OnDpiChanged(HWND window, int dpi, ViewerState& state) {
    NoteDpi(window, dpi);
    ForgetSavedUnder(state);
    InvalidateRect(window, nullptr, TRUE);
    return 0;
}

LRESULT OnDestroy(HWND window, WPARAM wParam, LPARAM lParam) {
    ForgetDpi(window);
    ForgetDelay(window);
    PostQuitMessage(0);
    return Default(window, WM_DESTROY, wParam, lParam);
}

LRESULT Dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam, ViewerState& state) {
    switch (message) {
        case WM_VIEWER_NEXT: PlayNextBlock(window, state); return 0;
        case WM_VIEWER_DELAY: StartDelay(window, state); return 0;
        case WM_TIMER: EndDelay(window); return 0;
        case WM_VIEWER_DISPOSE: return OnDispose(window, state);
        case WM_ERASEBKGND: return OnEraseBackground(window, reinterpret_cast<HDC>(wParam), state);
        case WM_PAINT: return OnPaint(window, wParam, lParam, state);
        case WM_CHAR: return OnChar(window, wParam, state);
        case WM_COMMAND: return OnCommand(window, wParam, lParam);
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK: return OnButton(window, message, wParam, lParam, IDCANCEL);
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK: return OnButton(window, message, wParam, lParam, kQuirkClickCommand);
        case kDpiChanged: return OnDpiChanged(window, LOWORD(wParam), state);
        case WM_DESTROY: return OnDestroy(window, wParam, lParam);
    }
    return Default(window, message, wParam, lParam);
}

void RegisterViewerClass(HBRUSH background) {
    WNDCLASSEXW viewer = {};
    viewer.cbSize = sizeof viewer;
    viewer.style = CS_HREDRAW | CS_VREDRAW;
    viewer.lpfnWndProc = ViewerProc;
    viewer.hInstance = hInstance;
    viewer.hIcon = LoadIconW(nullptr, MAKEINTRESOURCEW(32512));  // IDI_APPLICATION, whose name knows no wide form
    viewer.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    viewer.hbrBackground = background;
    viewer.lpszClassName = kViewerClass;
    RegisterClassExW(&viewer);  // fails inside another viewing, whose class then serves
}

void Handle(const MSG& message) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

// Posted messages overtake the user's input. A document that plays on without a delay would be deaf to its end, so the
// input gets its turn before every block.
void HandleInput() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_INPUT)) {
        if (message.message == WM_QUIT) return PostQuitMessage(static_cast<int>(message.wParam));
        Handle(message);
    }
}

void RunMessages() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_VIEWER_NEXT) HandleInput();
        Handle(message);
    }
}

}  // namespace

ViewerState* StateOfViewer(HWND window) {
    return reinterpret_cast<ViewerState*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

LRESULT CALLBACK ViewerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return OnCreate(window, reinterpret_cast<const CREATESTRUCTW*>(lParam));
    ViewerState* state = StateOfViewer(window);
    if (!state) return Default(window, message, wParam, lParam);
    try {
        return Dispatch(window, message, wParam, lParam, *state);
    } catch (const std::exception&) {  // memory has run out; no exception may cross the system's code
        return 0;
    }
}

void RunViewer(HWND owner, BlockList* list) {
    static constexpr ReadWindow kReadViewer = {[](HWND) -> std::wstring { return L"The animation. Escape ends it."; }};
    ViewerState state;
    NestedWait nested;
    if (!BeginViewing(&state, list)) {
        MessageBox(owner, LoadStr(kQuirkMissingString));
        return;
    }
    RegisterViewerClass(state.backgroundBrush);
    HWND window = ShowFullScreen(owner, kViewerClass, WS_VISIBLE | WS_BORDER, &state);
    if (window) {
        TellReaders(window, kReadViewer);
        UpdateWindow(window);
        RunMessages();
    }
    // The end of an outer viewing ends this one's messages before its window.
    if (IsWindow(window)) DestroyWindow(window);
    EndViewing(&state);
    UnregisterClassW(kViewerClass, hInstance);
    // An owner that was closed meanwhile has left one request to quit for two message loops.
    if (owner && !IsWindow(owner)) PostQuitMessage(0);
    UpdateWindow(owner);
}
