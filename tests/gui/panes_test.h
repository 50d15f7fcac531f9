// What tests of the preview and the filmstrip share.
#pragma once

#include <string>

#include "tests/gui/animation.h"
#include "tests/gui/composed.h"
#include "tests/gui/window_driver.h"
#include "windows/app/filmstrip.h"
#include "windows/app/preview.h"
#include "windows/ids/pane_ids.h"
#include "windows/services/screen_scale.h"

// Lines of TestAnimation.
constexpr int kFirstImage = 2, kSecondControl = 4, kSecondImage = 5, kThirdImage = 7;

// 40 x 30 pixels in three frames: with transparency, disposal, and an image that reaches beyond the screen.
inline Animation TestAnimation() {
    Animation made(40, 30);
    made.Control(2, 10, 3).Image({4, 5, 20, 10}).Comment().Control(1, 1).Image({10, 8, 16, 16, 8, false, true, 2});
    made.Control(3, 25, 0).Image({30, 20, 20, 20, 8, false, false, 3});
    return made;
}

class PanesTest : public ShellTest {
protected:
    HWND Preview() const { return GetDlgItem(hMainWindow, IDC_PREVIEW); }
    HWND Strip() const { return GetDlgItem(hMainWindow, IDC_FILMSTRIP); }
    HWND List() const { return GetDlgItem(hMainWindow, IDC_BLOCK_LIST); }

    void Show(Animation made) {
        ASSERT_TRUE(CopyBlockList(*made.List(), &document));
        FillBlockListView(hMainWindow, &document);
        SelectLine(hMainWindow, 0);
        PumpMessages();
    }
    // Until both panes show all that they are to show, with a generous limit.
    void Settle() const {
        for (int wait = 0; wait < 2000 && !IsSettled(); ++wait, Sleep(5)) PumpMessages();
        EXPECT_TRUE(IsSettled());
    }
    // Until the words have them, too.
    void CountBytes() const {
        Settle();
        for (int wait = 0; wait < 200 && NameOf(Preview()).find("bytes") == std::string::npos; ++wait, Sleep(10))
            PumpMessages();
    }
    bool IsSettled() const {
        return (!Preview() || IsPreviewReady(Preview())) && (!Strip() || IsFilmstripReady(Strip()));
    }
    RECT PlaceOf(HWND child) const {
        RECT place = {};
        GetWindowRect(child, &place);
        MapWindowPoints(nullptr, hMainWindow, reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
    static std::string NameOf(HWND pane) {
        wchar_t name[512] = L"";
        GetWindowTextW(pane, name, 512);
        return Utf8FromWide(name);
    }
    static Picture Painted(HWND pane) {
        RECT client = {};
        GetClientRect(pane, &client);
        Canvas canvas(client.right, client.bottom, RGB(255, 0, 255));
        SendMessageW(pane, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.Dc()), 0);
        return canvas.Look();
    }
    static void Press(HWND control, WPARAM key) {
        SendMessageW(control, WM_KEYDOWN, key, 0);
        PumpMessages();
    }
    static void Wheel(HWND to, int notches, POINT at) {
        ClientToScreen(to, &at);
        SendMessageW(to, WM_MOUSEWHEEL, MAKEWPARAM(0, notches * WHEEL_DELTA), MAKELPARAM(at.x, at.y));
        PumpMessages();
    }
    // The parts of the screen that are pixels of the canvas, in the preview, at `scale`, with the canvas in the middle;
    // a place for three lines of text is under it.
    void ExpectFrame(uint32_t frame, int scale, const RECT& outlined) {
        SCOPED_TRACE("frame " + std::to_string(frame) + ", scale " + std::to_string(scale));
        const ComposedFrame composed = Compose(document, frame);
        const Picture shown = Painted(Preview());
        WindowDc dc(Preview());
        SelectedObject font(dc.Get(), hListFont);
        TEXTMETRICW metric = {};
        GetTextMetricsW(dc.Get(), &metric);
        const int height = shown.height - 3 * static_cast<int>(metric.tmHeight) - ScaledFor(Preview(), 8);
        const int square = ScaledFor(Preview(), 8), dash = ScaledFor(Preview(), 4);
        const int left = (shown.width - composed.width * scale) / 2, top = (height - composed.height * scale) / 2;
        const RECT outline = {left + outlined.left * scale - 1, top + outlined.top * scale - 1,
                              left + outlined.right * scale, top + outlined.bottom * scale};
        int wrong = 0, dashes = 0;
        for (int y = top; y < top + composed.height * scale; ++y)
            for (int x = left; x < left + composed.width * scale; ++x) {
                const bool isInRange =
                    x >= outline.left && x <= outline.right && y >= outline.top && y <= outline.bottom;
                const bool isEdge = x == outline.left || x == outline.right || y == outline.top || y == outline.bottom;
                const auto at = static_cast<size_t>((y - top) / scale * composed.width + (x - left) / scale);
                const uint32_t colour = composed.pixels[at];
                COLORREF expected = RGB(colour >> 16, colour >> 8, colour);
                const bool isLight = ((x - left) / square + (y - top) / square) % 2 == 0;
                if (!composed.isOpaque[at]) expected = isLight ? RGB(255, 255, 255) : RGB(204, 204, 204);
                if (isInRange && isEdge) expected = (x + y) / dash % 2 == 0 ? RGB(0, 0, 0) : RGB(255, 255, 255);
                dashes += isInRange && isEdge;
                wrong += shown.At(x, y) != expected;
            }
        EXPECT_EQ(wrong, 0);
        EXPECT_GT(dashes, 0) << "an outline lies within";
    }
};
