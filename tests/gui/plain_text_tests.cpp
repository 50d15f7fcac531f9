// Plain text, against the same pieces drawn one by one.
#include "windows/drawing/plain_text.h"

#include <gtest/gtest.h>

#include "tests/gui/animation.h"
#include "tests/gui/viewer_stage.h"

TEST(PlainText, IsDrawnInCourierInAFrameAndInTheSystemsFontInTheViewer) {
    constexpr int kWidth = 260, kHeight = 120;
    constexpr RECT kFrame = {0, 0, kWidth, kHeight};
    constexpr uint8_t kTransparentIndex = 9;
    HFONT courier = CreateFontW(14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"Courier New");
    for (uint8_t background : {uint8_t{4}, kTransparentIndex}) {
        Animation animation(100, 60);
        animation.Control(0, 1, kTransparentIndex);
        animation.PlainText("abcdefgh\r\x80\xE4\xF6\rcut off", {5, 6, 5, 2, 8, 16, 3, background});
        auto expected = [&](COLORREF ground, HGDIOBJ font, int lineSpacing) {
            Canvas canvas(kWidth, kHeight, ground);
            HGDIOBJ previous = SelectObject(canvas.Dc(), font);
            TEXTMETRICW metrics;
            GetTextMetricsW(canvas.Dc(), &metrics);
            SetTextColor(canvas.Dc(), ColourRef(animation.Colour(3)));
            SetBkColor(canvas.Dc(), ColourRef(animation.Colour(background)));
            SetBkMode(canvas.Dc(), background == kTransparentIndex ? TRANSPARENT : OPAQUE);
            // A document of 100 x 60 in a frame of 260 x 120: everything moves by (80, 30).
            TextOutW(canvas.Dc(), 85, 36, L"abcde", 5);
            TextOutW(canvas.Dc(), 85, 36, L"fgh", 3);
            TextOutW(canvas.Dc(), 85, 36 + metrics.tmHeight + lineSpacing, L"\u20AC\u00E4\u00F6", 3);
            SelectObject(canvas.Dc(), previous);
            return canvas.Look();
        };
        Canvas canvas(kWidth, kHeight, RGB(10, 20, 30));
        DrawPlainText(canvas.Dc(), nullptr, animation.At(2), &kFrame, kTransparentIndex);
        EXPECT_EQ(Difference(expected(RGB(10, 20, 30), courier, -1), canvas.Look()), "");

        ViewerStage stage(animation.List(), kWidth, kHeight);
        EXPECT_EQ(stage.PlayToEnd(), 0);
        const Picture inViewer = expected(stage.State().backgroundColour, GetStockObject(ANSI_FIXED_FONT), 0);
        EXPECT_EQ(Difference(inViewer, stage.Look()), "");
    }
    DeleteObject(courier);
}
