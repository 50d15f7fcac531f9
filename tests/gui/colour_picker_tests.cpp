// The colour grid, the eyedropper and the faces of the buttons that open them.
#include <tuple>

#include "editing/dialogs/draw_buttons.h"
#include "editing/dialogs/edited_block.h"
#include "editing/dialogs/pick_colour.h"
#include "editing/dialogs/select_colour.h"
#include "resources/editor_ids.h"
#include "tests/gui/editor_test.h"
#include "tests/gui/picture.h"

namespace {

using ColourGrid = EditorTest;
using Eyedropper = EditorTest;
using ButtonFaces = EditorTest;

// What the window's client area shows.
Picture LookAt(HWND window) {
    UpdateWindow(window);
    RECT client;
    GetClientRect(window, &client);
    HDC dc = GetDC(window);
    Picture picture = Look(dc, client.right, client.bottom);
    ReleaseDC(window, dc);
    return picture;
}

TEST_F(ColourGrid, ClicksChooseCountedEntriesOnly) {
    constexpr uint32_t kUnchanged = 99;
    // The number of colours, a cell, and what a click on it chooses.
    const std::tuple<uint32_t, int, int, uint32_t> rows[] = {
        {256, 0, 0, 0},         {256, 15, 15, 255}, {40, 7, 2, 39},
        {40, 8, 2, kUnchanged}, {256, 16, 4, 80},   {256, 16, 15, kUnchanged}};  // the strip right of the last column
    const RgbTriples palette = {};
    for (const auto& [count, column, row, chosen] : rows) {
        uint32_t current = kUnchanged;
        DialogAnswers answers;
        answers.Do([column = column, row = row, chosen = chosen](HWND dialog) {
            RECT client;
            GetClientRect(dialog, &client);
            int cell = client.right / 16;
            LPARAM place = MAKELPARAM((column + 1) * cell - 1, (row + 1) * cell - 1);
            SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, place);
            EXPECT_EQ(Edited<ColourRequest>()->current, chosen);
            if (chosen == kUnchanged) PressButton(dialog, IDCANCEL);
        });
        EXPECT_EQ(SelectColour(nullptr, palette, count, &current), chosen != kUnchanged);
        EXPECT_EQ(current, chosen);
    }
}

TEST_F(ColourGrid, DrawsAllEntriesInBlackFrames) {
    RgbTriples palette;
    for (int i = 0; i < kPaletteEntries; ++i) palette[i] = {static_cast<uint8_t>(i), 200, 100};
    uint32_t current = 0;
    DialogAnswers answers;
    answers.Do([&palette](HWND dialog) {
        const Picture shown = LookAt(dialog);
        RECT button;
        GetWindowRect(GetDlgItem(dialog, IDCANCEL), &button);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&button), 2);
        int cell = shown.width / 16;
        EXPECT_LE(16 * cell, button.top) << "the button covers the last row";
        for (int i = 0; i < kPaletteEntries; ++i) {
            int x = i % 16 * cell, y = i / 16 * cell;
            EXPECT_EQ(shown.At(x, y), RGB(0, 0, 0)) << i;
            EXPECT_EQ(shown.At(x + cell / 2, y + cell / 2), ColourRef(palette[i])) << i;
        }
        PressButton(dialog, IDCANCEL);
    });
    EXPECT_FALSE(SelectColour(nullptr, palette, 2, &current));
}

Steps Message(UINT message, WPARAM wParam = 0) {
    return [=](HWND window) { SendMessageW(window, message, wParam, 0); };
}

TEST_F(Eyedropper, PicksPixelsOfTheImageAlone) {
    int right = GetSystemMetrics(SM_CXSCREEN) - 1, bottom = GetSystemMetrics(SM_CYSCREEN) - 1;
    auto outside = [](int x, int y) {
        return [=](HWND window) {
            ClickPixel(x, y)(window);
            EXPECT_TRUE(IsWindow(window)) << "a click outside the image ended the picking";
            SendMessageW(window, WM_RBUTTONUP, 0, 0);
        };
    };
    const std::tuple<int, int, Steps, uint32_t> rows[] = {{30, 20, ClickPixel(0, 0), 1},
                                                          {30, 20, ClickPixel(29, 19), 2},
                                                          {30, 20, outside(30, 5), kNoPixel},
                                                          {30, 20, outside(5, 20), kNoPixel},
                                                          {right + 100, bottom + 100, ClickPixel(right, bottom), 7},
                                                          {right + 1, bottom + 1, ClickPixel(right, bottom), 2},
                                                          {30, 20, Message(WM_CHAR, 13), kNoPixel},
                                                          {30, 20, Message(WM_CHAR, 27), kNoPixel},
                                                          {30, 20, Message(WM_CLOSE), kNoPixel}};
    for (const auto& [width, height, steps, picked] : rows) {
        Block image = {};
        image.data = MakeImage(width, height, 8, nullptr, [lastX = width - 1, lastY = height - 1](int x, int y) {
            return x == 0 && y == 0 ? 1u : x == lastX && y == lastY ? 2u : 7u;
        });
        uint32_t index = 5;
        DialogAnswers answers;
        answers.Do(steps);
        EXPECT_EQ(PickColourFromImage(nullptr, image, &index), picked != kNoPixel);
        EXPECT_EQ(index, picked) << width << " " << picked;
        FreeBlock(&image);
    }
    WNDCLASSW about;
    EXPECT_FALSE(GetClassInfoW(hInstance, L"KLM ZephyrSelect", &about)) << "the class is still registered";
}

TEST_F(Eyedropper, ShowsTheLocalPaletteOrElseTheGlobalOne) {
    const COLORREF local = RGB(3, 6, 9), global = ColourRef(At(kSampleHeader).palette[103]);
    for (const auto& [block, colour] : {std::pair(kSampleImage, local), {kSampleSecondImage, global}}) {
        uint32_t index = 0;
        DialogAnswers answers;
        answers.Do([colour = colour](HWND window) {
            EXPECT_EQ(LookAt(window).At(3, 3), colour);
            ClickPixel(3, 3)(window);
        });
        EXPECT_TRUE(PickColourFromImage(nullptr, At(block), &index));
    }
}

constexpr int kWidth = 40, kHeight = 24;
constexpr COLORREF kWhite = RGB(255, 255, 255), kBlack = RGB(0, 0, 0);

// A button of that state with the text "88", drawn by `draw`.
template <typename Draw>
Picture Drawn(UINT state, Draw draw) {
    Canvas canvas(kWidth, kHeight, 0);
    HWND button =
        CreateWindowW(L"BUTTON", L"88", WS_POPUP, 0, 0, kWidth, kHeight, nullptr, nullptr, hInstance, nullptr);
    draw(DRAWITEMSTRUCT{ODT_BUTTON, 0, 0, ODA_DRAWENTIRE, state, button, canvas.Dc(), {0, 0, kWidth, kHeight}, 0});
    DestroyWindow(button);
    return canvas.Look();
}

// Pixels of the colour inside the edge.
int Count(const Picture& picture, COLORREF colour) {
    int count = 0;
    for (int y = 3; y < kHeight - 3; ++y)
        for (int x = 3; x < kWidth - 3; ++x) count += picture.At(x, y) == colour;
    return count;
}

TEST_F(ButtonFaces, ColourButtonsCarryAReadableIndex) {
    const std::tuple<UINT, RgbTriple, COLORREF> rows[] = {
        {0, {129, 129, 129}, kWhite},                                    // luminance 128
        {0, {130, 130, 130}, kBlack},        {0, {255, 89, 8}, kWhite},  // 128, each term cut
        {0, {255, 90, 8}, kBlack},           {0, {0, 220, 0}, kBlack},
        {ODS_SELECTED, {0, 0, 128}, kWhite}, {ODS_DISABLED, {128, 128, 128}, CLR_INVALID}};
    for (const auto& [state, face, text] : rows) {
        SCOPED_TRACE(ColourRef(face));
        RgbTriples palette = {};
        if (state != ODS_DISABLED) palette[88] = face;
        const Picture button =
            Drawn(state, [&](const DRAWITEMSTRUCT& item) { DrawColourButton(nullptr, item, palette, 88); });
        EXPECT_GT(Count(button, ColourRef(face)), (kWidth - 6) * (kHeight - 6) / 2);
        EXPECT_EQ(Count(button, kWhite) > 5, text == kWhite);
        EXPECT_EQ(Count(button, kBlack) > 5, text == kBlack);
    }
}

TEST_F(ButtonFaces, EyedropperButtonsShowTheirState) {
    const COLORREF navy = RGB(0, 0, 128), face = GetSysColor(COLOR_BTNFACE);
    auto draw = [](const DRAWITEMSTRUCT& item) { DrawBitmapButton(nullptr, item, IDB_EYEDROPPER, 0); };
    const Picture raised = Drawn(0, draw), pressed = Drawn(ODS_SELECTED, draw), disabled = Drawn(ODS_DISABLED, draw);
    EXPECT_GT(Count(raised, navy), 5);
    EXPECT_NE(raised.At(0, 0), pressed.At(0, 0)) << "the edge is not sunken";
    // The mask is read one row lower than it is stored: in a picture that did not allow for that, white would be left
    // at the left of the glyph's outline.
    for (int y = 3; y < 20; ++y)
        for (int x = 3; x < 20; ++x) {
            EXPECT_EQ(pressed.At(x + 1, y + 1), raised.At(x, y)) << x << " " << y;
            EXPECT_FALSE(raised.At(x, y) == kWhite && raised.At(x - 1, y) == face) << x << " " << y;
        }
    EXPECT_EQ(Count(disabled, navy) + Count(disabled, kBlack), 0);
    EXPECT_GT(Count(disabled, GetSysColor(COLOR_BTNSHADOW)), 40);
    EXPECT_GT(Count(disabled, kWhite), 5) << "no light edge";
    EXPECT_EQ(disabled.At(30, 12), face);
}

}  // namespace
