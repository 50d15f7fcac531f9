// The colour grid, the eyedropper and the faces of the buttons that open them.
#include "editing/dialogs/draw_buttons.h"
#include "editing/dialogs/edited_block.h"
#include "editing/dialogs/pick_colour.h"
#include "editing/dialogs/select_colour.h"
#include "gif/descriptor.h"
#include "imaging/standard_palette.h"
#include "resources/editor_ids.h"
#include "tests/gui/editor_test.h"
#include "tests/gui/picture.h"

namespace {

using ColourGrid = EditorTest;
using Eyedropper = EditorTest;
using ButtonFaces = EditorTest;

TEST_F(ColourGrid, ClicksChooseCountedEntriesOnly) {
    constexpr uint32_t kUnchanged = 99;
    const struct {
        const char* what;
        uint32_t count;
        int column, row;
        uint32_t chosen;
    } rows[] = {
        {"the first cell", 256, 0, 0, 0},
        {"the last cell", 256, 15, 15, 255},
        {"the last counted cell", 40, 7, 2, 39},
        {"the cell behind it", 40, 8, 2, kUnchanged},
        {"two colours", 2, 1, 0, 1},
        {"beyond two colours", 2, 2, 0, kUnchanged},
        {"the strip right of the last column", 256, 16, 4, 80},
        {"the strip in the last row", 256, 16, 15, kUnchanged},
    };
    RgbTriples palette;
    int depth;
    StandardPalette(palette, &depth, kPaletteWeb);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        uint32_t current = kUnchanged;
        DialogAnswers answers;
        answers.Do([&row, &palette](HWND dialog) {
            EXPECT_EQ(Edited<ColourRequest>()->palette, palette);
            RECT client;
            GetClientRect(dialog, &client);
            int cell = client.right / 16;
            LPARAM place = MAKELPARAM((row.column + 1) * cell - 1, (row.row + 1) * cell - 1);
            SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, place);
            if (row.chosen == kUnchanged) PressButton(dialog, IDCANCEL);
        });
        EXPECT_EQ(SelectColour(nullptr, palette, row.count, &current), row.chosen != kUnchanged);
        EXPECT_EQ(current, row.chosen);
        EXPECT_EQ(editedBlock, nullptr);
    }
}

TEST_F(ColourGrid, DrawsAllEntriesInBlackFrames) {
    RgbTriples palette;
    for (int i = 0; i < kPaletteEntries; ++i) palette[i] = {static_cast<uint8_t>(i), 200, 100};
    uint32_t current = 0;
    DialogAnswers answers;
    answers.Do([&palette](HWND dialog) {
        UpdateWindow(dialog);
        RECT client, button;
        GetClientRect(dialog, &client);
        GetWindowRect(GetDlgItem(dialog, IDCANCEL), &button);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&button), 2);
        int cell = client.right / 16;
        EXPECT_LE(16 * cell, button.top) << "the button covers the last row";
        HDC dc = GetDC(dialog);
        for (int i = 0; i < kPaletteEntries; ++i) {
            int x = i % 16 * cell, y = i / 16 * cell;
            EXPECT_EQ(GetPixel(dc, x, y), RGB(0, 0, 0)) << i;
            EXPECT_EQ(GetPixel(dc, x + cell / 2, y + cell / 2), ColourRef(palette[i])) << i;
        }
        ReleaseDC(dialog, dc);
        PressButton(dialog, IDCANCEL);
    });
    EXPECT_FALSE(SelectColour(nullptr, palette, 2, &current));
}

// Index 1 at the top left, 2 at the bottom right, 7 everywhere else.
MemoryHandle MakeMarkedImage(int width, int height) {
    return MakeImage(width, height, 8, nullptr, [=](int x, int y) {
        return x == 0 && y == 0 ? 1u : x == width - 1 && y == height - 1 ? 2u : 7u;
    });
}

Steps CheckPixel(int x, int y, COLORREF expected, Steps then) {
    return [=](HWND window) {
        UpdateWindow(window);
        HDC dc = GetDC(window);
        EXPECT_EQ(GetPixel(dc, x, y), expected);
        ReleaseDC(window, dc);
        then(window);
    };
}

Steps PressKey(WPARAM key) {
    return [key](HWND window) { SendMessageW(window, WM_CHAR, key, 0); };
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
    const struct {
        const char* what;
        int width, height;
        Steps steps;
        uint32_t picked;
    } rows[] = {
        {"a small image's first pixel", 30, 20, ClickPixel(0, 0), 1},
        {"a small image's last pixel", 30, 20, ClickPixel(29, 19), 2},
        {"right of a small image", 30, 20, outside(30, 5), kNoPixel},
        {"below a small image", 30, 20, outside(5, 20), kNoPixel},
        {"a large image at the screen's corner", right + 100, bottom + 100, ClickPixel(right, bottom), 7},
        {"a large image whose last pixel is the screen's", right + 1, bottom + 1, ClickPixel(right, bottom), 2},
        {"the right button", 30, 20, [](HWND window) { SendMessageW(window, WM_RBUTTONUP, 0, 0); }, kNoPixel},
        {"Enter", 30, 20, PressKey(13), kNoPixel},
        {"Escape", 30, 20, PressKey(27), kNoPixel},
        {"closing", 30, 20, [](HWND window) { SendMessageW(window, WM_CLOSE, 0, 0); }, kNoPixel},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Block image = {};
        image.kind = kImageBlock;
        image.data = MakeMarkedImage(row.width, row.height);
        uint32_t index = 5;
        DialogAnswers answers;
        answers.Do(row.steps);
        EXPECT_EQ(PickColourFromImage(nullptr, image, &index), row.picked != kNoPixel);
        EXPECT_EQ(index, row.picked);
        WNDCLASSW about;
        EXPECT_FALSE(GetClassInfoW(hInstance, L"KLM ZephyrSelect", &about)) << "the class is still registered";
        FreeBlock(&image);
    }
}

TEST_F(Eyedropper, ShowsTheLocalPaletteOrElseTheGlobalOne) {
    SampleDocument document;
    Block local = document.At(kSampleImage), global = document.At(kSampleSecondImage);
    RgbTriple web = document.At(kSampleHeader).palette[119];
    uint32_t index = 0;
    DialogAnswers answers;
    answers.Do(CheckPixel(15, 3, RGB(15, 30, 45), ClickPixel(15, 3)));
    EXPECT_TRUE(PickColourFromImage(nullptr, local, &index));
    answers.Do(CheckPixel(19, 9, ColourRef(web), ClickPixel(19, 9)));
    EXPECT_TRUE(PickColourFromImage(nullptr, global, &index));
    EXPECT_EQ(index, 119u);
}

// A button drawn into memory.
class DrawnButton {
public:
    static constexpr int kWidth = 40, kHeight = 24;

    explicit DrawnButton(UINT state) : canvas_(kWidth, kHeight, 0) {
        button_ =
            CreateWindowW(L"BUTTON", L"88", WS_POPUP, 0, 0, kWidth, kHeight, nullptr, nullptr, hInstance, nullptr);
        item = {ODT_BUTTON, IDC_COLOUR, 0, ODA_DRAWENTIRE, state, button_, canvas_.Dc(), {0, 0, kWidth, kHeight}, 0};
    }
    ~DrawnButton() { DestroyWindow(button_); }
    DrawnButton(const DrawnButton&) = delete;
    DrawnButton& operator=(const DrawnButton&) = delete;

    COLORREF At(int x, int y) const { return GetPixel(canvas_.Dc(), x, y); }
    // Pixels of the colour inside the edge.
    int Count(COLORREF colour) const {
        int count = 0;
        for (int y = 3; y < kHeight - 3; ++y)
            for (int x = 3; x < kWidth - 3; ++x) count += At(x, y) == colour;
        return count;
    }

    DRAWITEMSTRUCT item;

private:
    Canvas canvas_;
    HWND button_;
};

constexpr COLORREF kWhite = RGB(255, 255, 255), kBlack = RGB(0, 0, 0);

TEST_F(ButtonFaces, ColourButtonsCarryAReadableIndex) {
    const struct {
        const char* what;
        UINT state;
        RgbTriple entry;
        COLORREF face, text;
    } rows[] = {
        {"luminance 128", 0, {129, 129, 129}, RGB(129, 129, 129), kWhite},
        {"luminance 129", 0, {130, 130, 130}, RGB(130, 130, 130), kBlack},
        {"luminance 128, each term cut", 0, {255, 89, 8}, RGB(255, 89, 8), kWhite},
        {"luminance 129, each term cut", 0, {255, 90, 8}, RGB(255, 90, 8), kBlack},
        {"green counts most", 0, {0, 220, 0}, RGB(0, 220, 0), kBlack},
        {"pressed", ODS_SELECTED, {0, 0, 128}, RGB(0, 0, 128), kWhite},
        {"disabled, without text", ODS_DISABLED, {0, 0, 0}, RGB(128, 128, 128), CLR_INVALID},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        RgbTriples palette = {};
        palette[88] = row.entry;
        DrawnButton button(row.state);
        DrawColourButton(nullptr, button.item, palette, 88);
        int area = (DrawnButton::kWidth - 6) * (DrawnButton::kHeight - 6);
        EXPECT_GT(button.Count(row.face), area / 2);
        EXPECT_EQ(button.Count(kWhite) > 5, row.text == kWhite);
        EXPECT_EQ(button.Count(kBlack) > 5, row.text == kBlack);
    }
}

TEST_F(ButtonFaces, EyedropperButtonsShowTheirState) {
    const COLORREF navy = RGB(0, 0, 128), face = GetSysColor(COLOR_BTNFACE), shadow = GetSysColor(COLOR_BTNSHADOW);
    DrawnButton raised(0), pressed(ODS_SELECTED), disabled(ODS_DISABLED);
    for (DrawnButton* button : {&raised, &pressed, &disabled})
        DrawBitmapButton(nullptr, button->item, IDB_EYEDROPPER, 0);

    EXPECT_GT(raised.Count(navy), 5);
    for (int y = 3; y < 20; ++y)
        for (int x = 3; x < 20; ++x) EXPECT_EQ(pressed.At(x + 1, y + 1), raised.At(x, y)) << x << " " << y;
    EXPECT_NE(raised.At(0, 0), pressed.At(0, 0)) << "the edge is not sunken";

    EXPECT_EQ(disabled.Count(navy) + disabled.Count(kBlack), 0);
    EXPECT_GT(disabled.Count(shadow), 40);
    EXPECT_GT(disabled.Count(kWhite), 5) << "no light edge";
    EXPECT_EQ(disabled.At(30, 12), face);
}

// The mask is read one row lower than it is stored, so the shapes fit together only when the picture allows for that:
// otherwise white would be left at the left of the glyph's outline.
TEST_F(ButtonFaces, EyedropperGlyphFitsItsMask) {
    DrawnButton button(0);
    DrawBitmapButton(nullptr, button.item, IDB_EYEDROPPER, 0);
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    int misfits = 0;
    for (int y = 3; y < 21; ++y)
        for (int x = 3; x < 21; ++x) misfits += button.At(x, y) == kWhite && button.At(x - 1, y) == face;
    EXPECT_EQ(misfits, 0);
}

}  // namespace
