#include "windows/drawing/enlargement.h"

#include "windows/services/screen_scale.h"

int EnlargementOf(HWND window) {
    return WholeFactor(DpiOf(window));
}

SIZE EnlargedClient(HWND window) {
    RECT client = {};
    GetClientRect(window, &client);
    const int factor = EnlargementOf(window);
    return {client.right / factor, client.bottom / factor};
}

void Enlarge(HDC dc, HWND window) {
    const int factor = EnlargementOf(window);
    if (factor == 1) return;
    SetMapMode(dc, MM_ANISOTROPIC);
    SetWindowExtEx(dc, 1, 1, nullptr);
    SetViewportExtEx(dc, factor, factor, nullptr);
    SetStretchBltMode(dc, COLORONCOLOR);
}

bool IsEnlarged(HDC dc) {
    return GetMapMode(dc) == MM_ANISOTROPIC;
}

void PutEnlargedRows(HDC dc, int x, int y, const BITMAPINFO* info, const void* pixels, int fromBottom, int rows) {
    const int width = info->bmiHeader.biWidth;
    StretchDIBits(dc, x, y, width, rows, 0, fromBottom, width, rows, pixels, info, DIB_RGB_COLORS, SRCCOPY);
}
