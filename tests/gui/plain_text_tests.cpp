// Plain text, against the same pieces drawn one by one.
#include "imaging/draw/plain_text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/gui/animation.h"
#include "tests/gui/viewer_stage.h"

namespace {

constexpr int kWidth = 260, kHeight = 120;
constexpr COLORREF kGround = RGB(10, 20, 30);
constexpr RECT kFrame = {0, 0, kWidth, kHeight};
constexpr uint32_t kTransparentIndex = 9;

// A document of 100 x 60 in a frame of 260 x 120: everything moves by (80, 30).
constexpr int kShiftX = 80, kShiftY = 30;

struct Piece {
    int line;
    const char* text;
};
const struct Case {
    const char* text;
    PlainTextFields fields;
    std::vector<Piece> pieces;
} kCases[] = {
    {"Hello", {5, 6, 20, 2, 8, 16, 3, 4}, {{0, "Hello"}}},
    {"Hello", {5, 6, 20, 2, 8, 16, 3, 9}, {{0, "Hello"}}},
    {"one\r\ntwo\rthree", {0, 0, 20, 2, 1, 1, 7, 4}, {{0, "one"}, {1, "two"}}},
    {"abcdefgh", {3, 0, 5, 3, 8, 16, 3, 9}, {{0, "abcde"}, {0, "fgh"}}},  // over its own beginning
    {"\r\x80\xE4\xF6", {0, 10, 20, 3, 8, 16, 3, 4}, {{1, "\x80\xE4\xF6"}}},
    {"text", {0, 0, 0, 3, 8, 16, 3, 4}, {}},
};

// What the pieces look like in `font`.
Picture Expected(const Animation& animation, const Case& given, COLORREF ground, HGDIOBJ font, int lineSpacing) {
    Canvas canvas(kWidth, kHeight, ground);
    HGDIOBJ previous = SelectObject(canvas.Dc(), font);
    TEXTMETRICW metrics;
    GetTextMetricsW(canvas.Dc(), &metrics);
    const PlainTextFields& fields = given.fields;
    SetTextColor(canvas.Dc(), ColourRef(animation.Colour(fields.foregroundIndex)));
    SetBkColor(canvas.Dc(), ColourRef(animation.Colour(fields.backgroundIndex)));
    SetBkMode(canvas.Dc(), fields.backgroundIndex == kTransparentIndex ? TRANSPARENT : OPAQUE);
    for (const Piece& piece : given.pieces)
        TextOutA(canvas.Dc(), fields.left + kShiftX,
                 fields.top + kShiftY + piece.line * (metrics.tmHeight + lineSpacing), piece.text,
                 static_cast<int>(strlen(piece.text)));
    SelectObject(canvas.Dc(), previous);
    return canvas.Look();
}

}  // namespace

TEST(PlainText, IsDrawnInCourierInAFrameAndInTheSystemsFontInTheViewer) {
    HFONT courier = CreateFontW(14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"Courier New");
    for (const Case& given : kCases) {
        SCOPED_TRACE(given.text);
        Animation animation(100, 60);
        animation.Control(0, 1, static_cast<int>(kTransparentIndex)).PlainText(given.text, given.fields);
        Canvas canvas(kWidth, kHeight, kGround);
        DrawPlainText(canvas.Dc(), nullptr, animation.At(2), &kFrame, kTransparentIndex);
        EXPECT_EQ(Difference(Expected(animation, given, kGround, courier, -1), canvas.Look()), "");

        ViewerStage stage(animation.List(), kWidth, kHeight);
        EXPECT_EQ(stage.PlayToEnd(), 0);
        const COLORREF ground = stage.State().backgroundColour;
        HGDIOBJ fixed = GetStockObject(ANSI_FIXED_FONT);
        EXPECT_EQ(Difference(Expected(animation, given, ground, fixed, 0), stage.Look()), "");
    }
    DeleteObject(courier);
}

TEST(PlainText, NothingComesOfOtherBlocksNorWithoutAHeader) {
    Animation animation(100, 60);
    animation.PlainText("Hello", {5, 6, 20, 2, 8, 16, 3, 4});
    BlockList headless = {};
    Block noText = animation.At(1), otherKind = noText, noHeader = noText;
    noText.data = nullptr;
    otherKind.kind = kCommentBlock;
    noHeader.owner = &headless;
    Canvas canvas(kWidth, kHeight, kGround);
    for (const Block& block : {noText, otherKind, noHeader})
        DrawPlainText(canvas.Dc(), nullptr, block, &kFrame, kNoTransparentIndex);
    EXPECT_EQ(Difference(Picture(kWidth, kHeight, kGround), canvas.Look()), "");
}
