// Plain text, against the same pieces drawn one by one.
#include "imaging/draw/plain_text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/gui/animation.h"
#include "tests/gui/viewer_stage.h"

namespace {

constexpr int kWidth = 260;
constexpr int kHeight = 120;
constexpr COLORREF kGround = RGB(10, 20, 30);

struct Piece {
    int line;
    const char* text;
};
struct Case {
    const char* text;
    PlainTextFields fields;
    bool opaque;
    std::vector<Piece> pieces;
};

// A document of 100 x 60 in a frame of 260 x 120: everything moves by (80, 30).
constexpr int kShiftX = 80;
constexpr int kShiftY = 30;
constexpr uint32_t kTransparentIndex = 9;

const Case kCases[] = {
    {"Hello", {5, 6, 20, 2, 8, 16, 3, 4}, true, {{0, "Hello"}}},
    {"Hello", {5, 6, 20, 2, 8, 16, 3, 9}, false, {{0, "Hello"}}},
    {"one\r\ntwo\rthree", {0, 0, 20, 2, 1, 1, 7, 4}, true, {{0, "one"}, {1, "two"}}},
    {"abcdefgh", {3, 0, 5, 3, 8, 16, 3, 9}, false, {{0, "abcde"}, {0, "fgh"}}},  // over its own beginning
    {"\r\x80\xE4\xF6", {0, 10, 20, 3, 8, 16, 3, 4}, true, {{1, "\x80\xE4\xF6"}}},
    {"text", {0, 0, 0, 3, 8, 16, 3, 4}, true, {}},
};

// Draws the pieces from (x, y) on with the font that is selected.
void DrawExpected(HDC dc, const Animation& animation, const Case& given, int x, int y, bool lessOne) {
    TEXTMETRICW metrics;
    GetTextMetricsW(dc, &metrics);
    SetTextColor(dc, ColourRef(animation.Colour(given.fields.foregroundIndex)));
    SetBkColor(dc, ColourRef(animation.Colour(given.fields.backgroundIndex)));
    SetBkMode(dc, given.opaque ? OPAQUE : TRANSPARENT);
    const int lineHeight = metrics.tmHeight - (lessOne ? 1 : 0);
    for (const Piece& piece : given.pieces)
        TextOutA(dc, x, y + piece.line * lineHeight, piece.text, static_cast<int>(strlen(piece.text)));
}

}  // namespace

TEST(PlainText, InAFrameIsDrawnInCourier) {
    for (const Case& given : kCases) {
        Animation animation(100, 60);
        animation.PlainText(given.text, given.fields);
        const RECT frame = {0, 0, kWidth, kHeight};
        Canvas canvas(kWidth, kHeight, kGround), expected(kWidth, kHeight, kGround);
        DrawPlainText(canvas.Dc(), nullptr, animation.At(1), &frame, kTransparentIndex);

        HFONT courier = CreateFontW(14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"Courier New");
        HGDIOBJ previous = SelectObject(expected.Dc(), courier);
        DrawExpected(expected.Dc(), animation, given, given.fields.left + kShiftX, given.fields.top + kShiftY, true);
        SelectObject(expected.Dc(), previous);
        DeleteObject(courier);
        EXPECT_EQ(Difference(expected.Look(), canvas.Look()), "") << given.text;
    }
}

TEST(PlainText, InTheViewerIsDrawnInTheSystemsFont) {
    for (const Case& given : kCases) {
        Animation animation(100, 60);
        animation.Control(0, 1, static_cast<int>(kTransparentIndex)).PlainText(given.text, given.fields);
        ViewerStage stage(animation.List(), kWidth, kHeight);
        EXPECT_EQ(stage.PlayToEnd(), 0);
        Canvas expected(kWidth, kHeight, stage.State().backgroundColour);
        SelectObject(expected.Dc(), GetStockObject(ANSI_FIXED_FONT));
        DrawExpected(expected.Dc(), animation, given, given.fields.left + kShiftX, given.fields.top + kShiftY, false);
        EXPECT_EQ(Difference(expected.Look(), stage.Look()), "") << given.text;
    }
}

TEST(PlainText, NothingComesOfOtherBlocksNorWithoutAHeader) {
    Animation animation(100, 60);
    animation.PlainText("Hello", {5, 6, 20, 2, 8, 16, 3, 4});
    BlockList headless = {};
    ASSERT_TRUE(CreateBlockList(&headless));
    Block noText = animation.At(1), otherKind = noText, noHeader = noText, noOwner = noText;
    noText.data = nullptr;
    otherKind.kind = kCommentBlock;
    noHeader.owner = &headless;
    noOwner.owner = nullptr;
    const RECT frame = {0, 0, kWidth, kHeight};
    Canvas canvas(kWidth, kHeight, kGround);
    for (const Block& block : {noText, otherKind, noHeader, noOwner})
        DrawPlainText(canvas.Dc(), nullptr, block, &frame, kNoTransparentIndex);
    EXPECT_EQ(Difference(Picture(kWidth, kHeight, kGround), canvas.Look()), "");
    DrawPlainText(canvas.Dc(), nullptr, animation.At(1), &frame, kNoTransparentIndex);
    EXPECT_NE(Difference(Picture(kWidth, kHeight, kGround), canvas.Look()), "");
    DestroyBlockList(&headless);
}
