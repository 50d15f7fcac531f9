#include "windows/services/screen_scale.h"

#include <algorithm>

namespace {

constexpr wchar_t kNotedDpi[] = L"KLM ZephyrDpi";  // the property for what the system does not say itself

// A function of user32 that older systems lack; null there.
template <typename Function>
Function* Newer(const char* name) {
    static_assert(sizeof(Function*) == sizeof(FARPROC));
    const FARPROC found = GetProcAddress(GetModuleHandleW(L"user32.dll"), name);
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
}

int DpiOfScreen() {
    HDC screen = GetDC(nullptr);
    const int dpi = screen ? GetDeviceCaps(screen, LOGPIXELSX) : 0;
    if (screen) ReleaseDC(nullptr, screen);
    return dpi > 0 ? dpi : kUsualDpi;
}

int DpiBySystem(HWND window) {
    static auto* const dpiForWindow = Newer<UINT WINAPI(HWND)>("GetDpiForWindow");
    const UINT dpi = window && dpiForWindow ? dpiForWindow(window) : 0;
    return dpi > 0 ? static_cast<int>(dpi) : DpiOfScreen();
}

}  // namespace

int DpiOf(HWND window) {
    HWND root = window ? GetAncestor(window, GA_ROOT) : nullptr;
    const auto noted = reinterpret_cast<UINT_PTR>(root ? GetPropW(root, kNotedDpi) : nullptr);
    return noted ? static_cast<int>(noted) : DpiBySystem(root);
}

void NoteDpi(HWND window, int dpi) {
    ForgetDpi(window);
    if (dpi > 0 && dpi != DpiBySystem(window))
        SetPropW(window, kNotedDpi, reinterpret_cast<HANDLE>(static_cast<UINT_PTR>(dpi)));
}

void ForgetDpi(HWND window) {
    RemovePropW(window, kNotedDpi);
}

int ScaledTo(int dpi, int pixels) {
    return MulDiv(pixels, dpi, kUsualDpi);
}

int ScaledFor(HWND window, int pixels) {
    return ScaledTo(DpiOf(window), pixels);
}

int WholeFactor(int dpi) {
    return std::max(dpi / kUsualDpi, 1);
}

int SystemMetricAt(int metric, int dpi) {
    static auto* const metricForDpi = Newer<int WINAPI(int, UINT)>("GetSystemMetricsForDpi");
    return metricForDpi ? metricForDpi(metric, static_cast<UINT>(dpi)) : GetSystemMetrics(metric);
}
