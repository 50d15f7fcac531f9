// Takes back what drawing took, at the end of the scope. Declare an object before the state that selects it.
#pragma once

#include "platform/windows_api.h"

// Something that is given back by `GiveBack`, a function object, unless it is null.
template <typename T, typename GiveBack>
class Guard {
public:
    explicit Guard(T taken, GiveBack giveBack = {}) : taken_(taken), giveBack_(giveBack) {}
    ~Guard() {
        if (taken_) giveBack_(taken_);
    }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

    T Get() const { return taken_; }
    explicit operator bool() const { return taken_ != T{}; }

private:
    T taken_;
    GiveBack giveBack_;
};

namespace give_back {

struct Delete {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
struct DeleteContext {
    void operator()(HDC dc) const { DeleteDC(dc); }
};
struct Restore {
    void operator()(int level) const { RestoreDC(dc, level); }
    HDC dc;
};
struct Select {
    void operator()(HGDIOBJ object) const { SelectObject(dc, object); }
    HDC dc;
};
struct Release {
    void operator()(HDC dc) const { ReleaseDC(window, dc); }
    HWND window;
};

}  // namespace give_back

// Owns a brush, pen or bitmap.
using OwnedGdiObject = Guard<HGDIOBJ, give_back::Delete>;

// Restores everything selected into or set on a device context.
struct SavedDc : Guard<int, give_back::Restore> {
    explicit SavedDc(HDC dc) : Guard(SaveDC(dc), {dc}) {}
};

// A memory device context compatible with `dc`.
struct MemoryDc : Guard<HDC, give_back::DeleteContext> {
    explicit MemoryDc(HDC dc) : Guard(CreateCompatibleDC(dc)) {}
};

// The device context of a window's client area, or, for null, of the screen.
struct WindowDc : Guard<HDC, give_back::Release> {
    explicit WindowDc(HWND window) : Guard(GetDC(window), {window}) {}
};

// Selects an object, and puts the one before back.
struct SelectedObject : Guard<HGDIOBJ, give_back::Select> {
    SelectedObject(HDC dc, HGDIOBJ object) : Guard(SelectObject(dc, object), {dc}) {}
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
