// Takes back what drawing took, at the end of the scope. Declare an object before the state that selects it.
#pragma once

#include "platform/api_win32.h"

// Restores everything selected into or set on a device context.
class SavedDc {
public:
    explicit SavedDc(HDC dc) : dc_(dc), level_(SaveDC(dc)) {}
    ~SavedDc() { RestoreDC(dc_, level_); }
    SavedDc(const SavedDc&) = delete;
    SavedDc& operator=(const SavedDc&) = delete;

private:
    HDC dc_;
    int level_;
};

// Owns a brush, pen or bitmap.
class OwnedGdiObject {
public:
    explicit OwnedGdiObject(HGDIOBJ object) : object_(object) {}
    ~OwnedGdiObject() {
        if (object_) DeleteObject(object_);
    }
    OwnedGdiObject(const OwnedGdiObject&) = delete;
    OwnedGdiObject& operator=(const OwnedGdiObject&) = delete;
    HGDIOBJ Get() const { return object_; }

private:
    HGDIOBJ object_;
};

// A memory device context compatible with `dc`.
class MemoryDc {
public:
    explicit MemoryDc(HDC dc) : dc_(CreateCompatibleDC(dc)) {}
    ~MemoryDc() {
        if (dc_) DeleteDC(dc_);
    }
    MemoryDc(const MemoryDc&) = delete;
    MemoryDc& operator=(const MemoryDc&) = delete;
    HDC Get() const { return dc_; }

private:
    HDC dc_;
};

// What WM_PAINT begins and ends.
class WindowPaint {
public:
    explicit WindowPaint(HWND window) : window_(window) { BeginPaint(window, &paint_); }
    ~WindowPaint() { EndPaint(window_, &paint_); }
    WindowPaint(const WindowPaint&) = delete;
    WindowPaint& operator=(const WindowPaint&) = delete;
    HDC Dc() const { return paint_.hdc; }

private:
    HWND window_;
    PAINTSTRUCT paint_ = {};
};

// The device context of a window's client area, or, for null, of the screen.
class WindowDc {
public:
    explicit WindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
    ~WindowDc() {
        if (dc_) ReleaseDC(window_, dc_);
    }
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    HDC Get() const { return dc_; }

private:
    HWND window_;
    HDC dc_;
};

// Selects an object, and puts the one before back.
class SelectedObject {
public:
    SelectedObject(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
    ~SelectedObject() {
        if (previous_) SelectObject(dc_, previous_);
    }
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;
    explicit operator bool() const { return previous_ != nullptr; }

private:
    HDC dc_;
    HGDIOBJ previous_;
};
