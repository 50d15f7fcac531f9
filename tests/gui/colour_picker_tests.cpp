// The colour grid, the eyedropper and the faces of the buttons that open them.
#include "editing/dialogs/draw_buttons.h"
#include "editing/dialogs/edited_block.h"
#include "editing/dialogs/pick_colour.h"
#include "editing/dialogs/select_colour.h"
#include "tests/gui/editor_test.h"

namespace {

using ColourPickers = EditorTest;

TEST_F(ColourPickers, TheGridShowsAllEntriesAndChoosesCountedOnes) {
    constexpr uint32_t kUnchanged = 99;
    RgbTriples palette;
    for (int i = 0; i < kPaletteEntries; ++i) palette[i] = {static_cast<uint8_t>(i), 200, 100};
    // The number of colours, a cell, and what a click on it chooses.
    const std::tuple<uint32_t, int, int, uint32_t> rows[] = {
        {256, 0, 0, 0},         {256, 15, 15, 255}, {40, 7, 2, 39},
        {40, 8, 2, kUnchanged}, {256, 16, 4, 80},   {256, 16, 15, kUnchanged}};  // the strip right of the last column
    for (const auto& [count, column, row, chosen] : rows) {
        uint32_t current = kUnchanged;
        DialogAnswers answers({[&, column = column, row = row, chosen = chosen](HWND dialog) {
            RECT client;
            GetClientRect(dialog, &client);
            UpdateWindow(dialog);
            HDC dc = GetDC(dialog);
            for (int i = 0, cell = client.right / 16; i < kPaletteEntries; ++i) {
                int x = i % 16 * cell, y = i / 16 * cell;
                EXPECT_EQ(GetPixel(dc, x, y), RGB(0, 0, 0)) << i;
                EXPECT_EQ(GetPixel(dc, x + cell / 2, y + cell / 2), ColourRef(palette[i])) << i;
                EXPECT_EQ(ChildWindowFromPoint(dialog, {x + cell - 1, y + cell - 1}), dialog) << i;
            }
            ReleaseDC(dialog, dc);
            ChooseCell(column, row)(dialog);
            EXPECT_EQ(Edited<ColourRequest>()->current, chosen);
            if (chosen == kUnchanged) PressButton(dialog, IDCANCEL);
        }});
        EXPECT_EQ(SelectColour(hMainWindow, palette, count, &current), chosen != kUnchanged);
        EXPECT_EQ(current, chosen);
    }
}

TEST_F(ColourPickers, TheEyedropperPicksPixelsOfTheImageAlone) {
    const int right = GetSystemMetrics(SM_CXSCREEN) - 1, bottom = GetSystemMetrics(SM_CYSCREEN) - 1;
    auto send = [](UINT message, WPARAM wParam, LPARAM lParam) {
        return [=](HWND window) { SendMessageW(window, message, wParam, lParam); };
    };
    auto click = [=](int x, int y) { return send(WM_LBUTTONUP, 0, MAKELPARAM(x, y)); };
    // The image's size, steps that go on, steps that end the picking, and what they pick.
    const std::tuple<int, int, Steps, Steps, uint32_t> rows[] = {
        {30, 20, click(30, 5), click(0, 0), 1},
        {30, 20, click(5, 20), click(29, 19), 2},
        {right + 100, bottom + 100, send(WM_CHAR, 'x', 0), click(right, bottom), 7},
        {right + 1, bottom + 1, click(right + 1, 0), click(right, bottom), 2},
        {30, 20, click(30, 5), send(WM_RBUTTONUP, 0, 0), kNoPixel},
        {30, 20, click(30, 5), send(WM_CHAR, 13, 0), kNoPixel},
        {30, 20, click(30, 5), send(WM_CHAR, 27, 0), kNoPixel},
        {30, 20, click(30, 5), send(WM_CLOSE, 0, 0), kNoPixel}};
    for (const auto& [width, height, goOn, end, picked] : rows) {
        Block image = {};
        image.data = MakeImage(width, height, 8, nullptr, [lastX = width - 1, lastY = height - 1](int x, int y) {
            return x == 0 && y == 0 ? 1u : x == lastX && y == lastY ? 2u : 7u;
        });
        uint32_t index = 5;
        DialogAnswers answers({[goOn = goOn, end = end](HWND window) {
            goOn(window);
            end(window);
        }});
        EXPECT_EQ(PickColourFromImage(hMainWindow, image, &index), picked != kNoPixel);
        EXPECT_EQ(index, picked) << width << " " << picked;
        FreeBlock(&image);
        WNDCLASSW about;
        EXPECT_FALSE(GetClassInfoW(hInstance, L"KLM ZephyrSelect", &about)) << "the class is still registered";
    }
}

constexpr int kWidth = 40, kHeight = 24;
constexpr COLORREF kWhite = RGB(255, 255, 255), kBlack = RGB(0, 0, 0);

// A button of that state with the text "88", drawn by `draw`.
Picture Drawn(UINT state, const std::function<void(const DRAWITEMSTRUCT& item)>& draw) {
    Canvas canvas(kWidth, kHeight, 0);
    SetWindowTextW(hMainWindow, L"88");
    draw({ODT_BUTTON, 0, 0, ODA_DRAWENTIRE, state, hMainWindow, canvas.Dc(), {0, 0, kWidth, kHeight}, 0});
    return canvas.Look();
}

// Pixels of the colour inside the edge.
int Count(const Picture& picture, COLORREF colour) {
    int count = 0;
    for (int y = 3; y < kHeight - 3; ++y)
        for (int x = 3; x < kWidth - 3; ++x) count += picture.At(x, y) == colour;
    return count;
}

TEST_F(ColourPickers, ColourButtonsCarryAReadableIndex) {
    const std::tuple<UINT, RgbTriple, COLORREF> rows[] = {{0, {129, 129, 129}, kWhite},  // luminance 128
                                                          {0, {130, 130, 130}, kBlack},
                                                          {0, {255, 89, 8}, kWhite},  // 128, each term cut
                                                          {0, {255, 90, 8}, kBlack},
                                                          {ODS_SELECTED, {0, 0, 128}, kWhite},
                                                          {ODS_DISABLED, {128, 128, 128}, CLR_INVALID}};
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

TEST_F(ColourPickers, EyedropperButtonsShowTheirState) {
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
}

}  // namespace
