// Plays a GIF file through the viewer and writes what its window shows after every image: the logical screen, as
// FOLDER\000.ppm and so on. Every delay is over at once; the file plays once, whatever its loop block says.
//
//   viewer_frames FILE.gif FOLDER
#include <cstdio>
#include <string>

#include "gif/descriptor.h"
#include "gif/gif_reader.h"
#include "imaging/draw/viewer_state.h"

namespace {

constexpr DWORD kSettleMilliseconds = 60;
constexpr int kMargin = 100;  // around the logical screen; images larger than the client area are placed otherwise

struct Screen {
    HWND window;
    int width, height;
};

// The window is exposed a little after its creation; what is painted until then would be erased again.
void Settle() {
    DWORD start = GetTickCount();
    MSG message;
    while (GetTickCount() - start < kSettleMilliseconds) {
        while (PeekMessageW(&message, nullptr, 0, WM_USER, PM_REMOVE)) DispatchMessageW(&message);
        Sleep(5);
    }
}

Screen OpenScreen(ViewerState* state) {
    WNDCLASSW viewer = {};
    viewer.lpfnWndProc = ViewerProc;
    viewer.hInstance = GetModuleHandleW(nullptr);
    viewer.lpszClassName = L"Viewer frames";
    RegisterClassW(&viewer);
    Screen screen = {nullptr, static_cast<int>(state->screenWidth), static_cast<int>(state->screenHeight)};
    screen.window = CreateWindowExW(WS_EX_TOPMOST, viewer.lpszClassName, L"", WS_POPUP | WS_VISIBLE, 0, 0,
                                    screen.width + 2 * kMargin, screen.height + 2 * kMargin, nullptr, nullptr,
                                    viewer.hInstance, state);
    Settle();
    return screen;
}

bool WriteFrame(const Screen& screen, const std::string& path) {
    FILE* file = fopen(path.c_str(), "wb");
    if (!file) return false;
    fprintf(file, "P6\n%d %d\n255\n", screen.width, screen.height);
    HDC dc = GetDC(screen.window);
    for (int y = 0; y < screen.height; ++y)
        for (int x = 0; x < screen.width; ++x) {
            COLORREF colour = GetPixel(dc, kMargin + x, kMargin + y);
            const unsigned char bytes[] = {GetRValue(colour), GetGValue(colour), GetBValue(colour)};
            fwrite(bytes, 1, sizeof bytes, file);
        }
    ReleaseDC(screen.window, dc);
    return fclose(file) == 0;
}

bool WriteFrames(const Screen& screen, ViewerState* state, const std::string& folder) {
    MSG message;
    for (int frame = 0; state->nextIndex <= state->list->count;) {
        if (!PeekMessageW(&message, screen.window, WM_VIEWER_NEXT, WM_VIEWER_DISPOSE, PM_REMOVE)) return true;
        state->loopsLeft = 0;
        DispatchMessageW(&message);
        if (message.message != WM_VIEWER_DELAY) continue;
        char name[20];
        snprintf(name, sizeof name, "\\%03d.ppm", frame++);
        if (!WriteFrame(screen, folder + name)) return false;
        if (pendingWait > 0 && state->delay > 0) SendMessageW(screen.window, WM_TIMER, kDelayTimer, 0);
    }
    return true;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) return fputs("usage: viewer_frames FILE.gif FOLDER\n", stderr), 2;
    BlockList list = {};
    if (!CreateBlockList(&list) || ReadGifFile(&list, arguments[1]) == kReadNotGif)
        return fprintf(stderr, "viewer_frames: %s is no GIF file\n", arguments[1]), 1;
    ViewerState state = {};
    if (!BeginViewing(&state, &list)) return fputs("viewer_frames: no header\n", stderr), 1;
    const Screen screen = OpenScreen(&state);
    bool written = WriteFrames(screen, &state, arguments[2]);
    DestroyWindow(screen.window);
    EndViewing(&state);
    DestroyBlockList(&list);
    return written ? 0 : (fputs("viewer_frames: a frame could not be written\n", stderr), 1);
}
