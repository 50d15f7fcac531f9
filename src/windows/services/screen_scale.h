// How dense the screen is that a window stands on, and lengths on it. Lengths that the program states are pixels of a
// screen of 96 dots per inch, where everything stays as stated; on others they are scaled.
#pragma once

#include "platform/windows_api.h"

constexpr int kUsualDpi = 96;

// WM_DPICHANGED, which the headers keep from programs that run on older systems too.
constexpr UINT kDpiChanged = 0x02E0;

// The dots per inch that `window`, or the window that it is a part of, is drawn for; for null those of the screen.
// Systems that know one density for all screens answer with that.
int DpiOf(HWND window);

// What WM_DPICHANGED says: from now on the window is drawn for `dpi`. To be called before it is laid out anew.
void NoteDpi(HWND window, int dpi);

// Takes back what NoteDpi may keep with the window. To be called before it goes.
void ForgetDpi(HWND window);

// `pixels` of a usual screen on one of `dpi`, rounded.
int ScaledTo(int dpi, int pixels);

// The same on the screen of `window`.
int ScaledFor(HWND window, int pixels);

// How many pixels in a row stand for one of a picture that must not be blurred: 1 up to below 192 dots per inch, then
// 2, and so on.
int WholeFactor(int dpi);

// GetSystemMetrics for windows on a screen of `dpi`.
int SystemMetricAt(int metric, int dpi);
