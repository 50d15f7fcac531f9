// The colour grid, the eyedropper and the faces of the buttons that open them.
#include "tests/gui/editor_test.h"
#include "windows/dialogs/colour_grid.h"
#include "windows/dialogs/draw_buttons.h"
#include "windows/dialogs/edited_block.h"
#include "windows/dialogs/pick_colour.h"
#include "windows/dialogs/select_colour.h"
#include "windows/services/screen_scale.h"

namespace {

using ColourPickers = EditorTest;

TEST_F(ColourPickers, TheGridShowsAllEntriesAndChoosesCountedOnes) {
    constexpr uint32_t kUnchanged = 99;
    RgbTriples palette;
    for (int i = 0; i < kPaletteEntries; ++i) palette[i] = {static_cast<uint8_t>(i), 200, 100};
    // The number of colours, a cell (in the strip right of the last column: kQuirkColumnsRunOn), and what a click on it
    // chooses.
    const std::tuple<uint32_t, int, int, uint32_t> rows[] = {{256, 0, 0, 0},   {256, 15, 15, 255},
                                                             {40, 7, 2, 39},   {40, 8, 2, kUnchanged},
                                                             {256, 16, 4, 80}, {256, 16, 15, kUnchanged}};
    for (const auto& [count, column, row, chosen] : rows) {
        uint32_t current = kUnchanged;
        DialogAnswers answers({[&, column = column, row = row, chosen = chosen](HWND dialog) {
            RECT client;
            GetClientRect(dialog, &client);
            for (int i = 0, cell = client.right / 16; i < kPaletteEntries; ++i) {
                int x = i % 16 * cell, y = i / 16 * cell;
                EXPECT_EQ(PixelAt(dialog, x, y), RGB(0, 0, 0)) << i;
                EXPECT_EQ(PixelAt(dialog, x + cell / 2, y + cell / 2), ColourRef(palette[i])) << i;
                EXPECT_EQ(ChildWindowFromPoint(dialog, {x + cell - 1, y + cell - 1}), dialog) << i;
            }
            ChooseCell(column, row)(dialog);
            EXPECT_EQ(Edited<ColourRequest>(dialog)->current, chosen);
            if (chosen == kUnchanged) PressButton(dialog, IDCANCEL);
        }});
        EXPECT_EQ(SelectColour(hMainWindow, palette, count, &current), chosen != kUnchanged);
        EXPECT_EQ(current, chosen);
    }
}

// By keys as a person presses them: they go where the focus is, through the dialog.
TEST_F(ColourPickers, InCarefulModeTheGridTakesKeysAndMarksTheColour) {
    settings.carefulMode = 1;
    RgbTriples palette;
    for (int i = 0; i < kPaletteEntries; ++i) palette[i] = {static_cast<uint8_t>(i), 200, 100};
    const struct {
        uint32_t count, current;
        std::vector<WPARAM> keys;
        uint32_t marked;
    } cases[] = {{256, 37, {}, 37},
                 {256, 37, {VK_RIGHT}, 38},
                 {256, 37, {VK_LEFT, VK_UP}, 20},
                 {256, 37, {VK_DOWN, VK_DOWN}, 69},
                 {256, 37, {VK_HOME, VK_LEFT, VK_UP}, 0},
                 {256, 37, {VK_END, VK_RIGHT, VK_DOWN}, 255},
                 {40, 37, {VK_DOWN, VK_RIGHT, VK_RIGHT, VK_RIGHT}, 39},
                 {40, 37, {VK_END}, 39},
                 {2, 200, {}, 1}};
    for (const auto& row : cases)
        for (WPARAM choose : {WPARAM{VK_RETURN}, WPARAM{VK_SPACE}, WPARAM{VK_ESCAPE}}) {
            uint32_t current = row.current;
            DialogAnswers answers({[&](HWND dialog) {
                PumpMessages();
                HWND grid = GetDlgItem(dialog, IDC_COLOUR_GRID);
                EXPECT_EQ(GetFocus(), grid);
                auto press = [&](WPARAM key) {
                    MSG message = {grid, WM_KEYDOWN, key, 1, 0, {}};
                    EXPECT_TRUE(IsDialogMessageW(dialog, &message));
                };
                for (WPARAM key : row.keys) press(key);
                const int marked = static_cast<int>(row.marked);
                RECT client = {};
                GetClientRect(grid, &client);
                for (int i = 0, cell = client.right / 16; i < kPaletteEntries; ++i) {
                    const int x = i % 16 * cell, y = i / 16 * cell;
                    EXPECT_EQ(PixelAt(grid, x + cell / 2, y + cell / 2), ColourRef(palette[i])) << i;
                    EXPECT_EQ(PixelAt(grid, x + 1, y + cell / 2) == RGB(255, 255, 255), i == marked) << i;
                }
                press(choose);
            }});
            const bool chosen = choose != VK_ESCAPE;
            EXPECT_EQ(SelectColour(hMainWindow, palette, row.count, &current), chosen);
            EXPECT_EQ(current, chosen ? row.marked : row.current);
        }
}

TEST_F(ColourPickers, InCarefulModeAClickStillChooses) {
    settings.carefulMode = 1;
    RgbTriples palette = {};
    uint32_t current = 3;
    DialogAnswers answers({[&](HWND dialog) {
        HWND grid = GetDlgItem(dialog, IDC_COLOUR_GRID);
        RECT client = {};
        GetClientRect(grid, &client);
        const int cell = client.right / 16;
        SendMessageW(grid, WM_LBUTTONDOWN, 0, MAKELPARAM(8 * cell, 2 * cell));
        EXPECT_TRUE(IsWindow(grid)) << "there are only 40 colours";
        SendMessageW(grid, WM_LBUTTONDOWN, 0, MAKELPARAM(8 * cell - 1, 3 * cell - 1));
    }});
    EXPECT_TRUE(SelectColour(hMainWindow, palette, 40, &current));
    EXPECT_EQ(current, 39u);
}

TEST_F(ColourPickers, ADialogBehindTheGridGoesOnWithItsOwnBlock) {
    constexpr uint8_t kBackground = 40;
    Block before = At(kSampleHeader);
    PutHeaderFields(&before, {640, 480, 0x87, kBackground, 0});
    Put(before);
    const COLORREF colour = ColourRef(before.palette[kBackground]);
    auto buttonColour = [](HWND dialog) {
        HWND button = GetDlgItem(dialog, IDC_COLOUR);
        InvalidateRect(button, nullptr, FALSE);
        return PixelAt(button, 4, 4);
    };
    auto inGrid = [&](HWND grid) {
        HWND header = GetWindow(grid, GW_OWNER);
        SetWindowPos(grid, nullptr, 0, 0, 0, 0, SWP_NOSIZE);
        EXPECT_EQ(editedBlock, SubjectOf(grid));
        EXPECT_NE(editedBlock, SubjectOf(header));
        EXPECT_EQ(buttonColour(header), colour);
        PressButton(grid, IDCANCEL);
    };
    auto takeBehindGrid = [&](HWND grid) {
        HWND header = GetWindow(grid, GW_OWNER);
        SetDlgItemInt(header, IDC_HEADER_WIDTH, 321, FALSE);
        PressButton(header, IDOK);
        PressButton(grid, IDCANCEL);
    };
    auto inHeader = [&](HWND header) {
        SendMessageW(header, WM_COMMAND, 0, 0);  // the number of the second button, which there is not
        const DRAWITEMSTRUCT none = {ODT_BUTTON, 0, 0, ODA_DRAWENTIRE, 0, header, nullptr, {}, 0};
        EXPECT_FALSE(SendMessageW(header, WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&none)));
        EXPECT_EQ(buttonColour(header), colour);
        PressButton(header, IDC_COLOUR);
        EXPECT_EQ(buttonColour(header), colour);
        PressButton(header, IDC_COLOUR);
    };
    EXPECT_EQ(Edit(kSampleHeader, {inHeader, inGrid, takeBehindGrid}), kBlockEdited);
    EXPECT_EQ(editedBlock, nullptr);
    EXPECT_EQ(LineOf(kSampleHeader), "HEADER\xFE GIF89a Screen (321 x 480)");
    EXPECT_EQ(GetHeaderFields(At(kSampleHeader)).backgroundIndex, kBackground);
}

TEST_F(ColourPickers, TheEyedropperEndsWithoutAPixelButNotBesideTheImage) {
    for (const auto& [message, key] : {std::pair(WM_CHAR, 13), {WM_CHAR, 27}, {WM_RBUTTONUP, 0}, {WM_CLOSE, 0}}) {
        DialogAnswers answers({[message = message, key = key](HWND window) {
            for (LPARAM beside : {MAKELPARAM(20, 5), MAKELPARAM(5, 10)}) SendMessageW(window, WM_LBUTTONUP, 0, beside);
            EXPECT_TRUE(IsWindow(window));
            SendMessageW(window, static_cast<UINT>(message), static_cast<WPARAM>(key), 0);
        }});
        uint32_t index = 5;
        EXPECT_FALSE(PickColourFromImage(hMainWindow, At(kSampleSecondImage), &index));
        EXPECT_EQ(index, kNoPixel);
    }
    WNDCLASSW about;
    EXPECT_FALSE(GetClassInfoW(hInstance, L"KLM ZephyrSelect", &about)) << "the class is still registered";
}

TEST_F(ColourPickers, TheEyedropperEnlargesOnDenseScreens) {
    const Block image = At(kSampleSecondImage);
    const ImageFields fields = GetImageFields(image);
    const int x = fields.width - 1, y = fields.height - 1;
    DialogAnswers answers({[&](HWND window) {
        const COLORREF usual = PixelAt(window, x, y);
        SendMessageW(window, kDpiChanged, MAKEWPARAM(192, 192), 0);
        for (const auto& [right, down] : {std::pair(0, 0), {1, 1}})
            EXPECT_EQ(PixelAt(window, 2 * x + right, 2 * y + down), usual);
        SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(2 * x + 2, 2 * y + 1));
        EXPECT_TRUE(IsWindow(window)) << "beside the image";
        SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(2 * x + 1, 2 * y + 1));
    }});
    uint32_t index = 0;
    EXPECT_TRUE(PickColourFromImage(hMainWindow, image, &index));
    EXPECT_EQ(index, GetImagePixel(ImageLock(image.data), x, y));
}

TEST_F(ColourPickers, TheGridIsLaidOutAnewOnADenseScreen) {
    RgbTriples palette = {};
    uint32_t current = 0;
    DialogAnswers answers({[&](HWND dialog) {
        auto see = [&](int cell, int button) {
            RECT client, cancel;
            GetClientRect(dialog, &client);
            GetClientRect(GetDlgItem(dialog, IDCANCEL), &cancel);
            EXPECT_EQ(client.right, 16 * cell);
            EXPECT_EQ(client.bottom, 16 * cell + button);
            EXPECT_EQ(cancel.right, 16 * cell);
        };
        for (const auto& [dpi, cell, button] : {std::tuple(144, 18, 48), {192, 24, 64}, {96, 12, 32}}) {
            SendMessageW(dialog, kDpiChanged, MAKEWPARAM(dpi, dpi), 0);
            PumpMessages();
            see(cell, button);
        }
        ChooseCell(5, 2)(dialog);
    }});
    EXPECT_TRUE(SelectColour(hMainWindow, palette, 256, &current));
    EXPECT_EQ(current, 37u);
}

TEST_F(ColourPickers, TheEyedropperPicksNothingWhenItsOwnerOrTheProgramEnds) {
    const std::tuple<const char*, void (*)(), WPARAM> ends[] = {{"quit", [] { PostQuitMessage(7); }, 7},
                                                                {"owner", [] { DestroyWindow(hMainWindow); }, 0}};
    for (const auto& [name, end, exitCode] : ends) {
        SCOPED_TRACE(name);
        HWND eyedropper = nullptr;
        DialogAnswers answers({[&, end = end](HWND window) {
            eyedropper = window;
            end();
        }});
        uint32_t index = 5;
        EXPECT_FALSE(PickColourFromImage(hMainWindow, At(kSampleSecondImage), &index));
        EXPECT_EQ(index, kNoPixel);
        EXPECT_FALSE(IsWindow(eyedropper));
        MSG message = {};
        EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "the program goes on";
        EXPECT_EQ(message.wParam, exitCode);
        EXPECT_EQ(IsWindowEnabled(hMainWindow), IsWindow(hMainWindow));
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

TEST_F(ColourPickers, ButtonsShowTheirColourAndState) {
    // Of luminance 128, 129, 128, as each term is cut, and 129.
    const std::tuple<UINT, RgbTriple, COLORREF> rows[] = {
        {0, {129, 129, 129}, kWhite},        {0, {130, 130, 130}, kBlack},
        {0, {255, 89, 8}, kWhite},           {0, {255, 90, 8}, kBlack},
        {ODS_SELECTED, {0, 0, 128}, kWhite}, {ODS_DISABLED, {128, 128, 128}, CLR_INVALID}};
    for (const auto& [state, face, text] : rows) {
        RgbTriples palette = {};
        if (state != ODS_DISABLED) palette[88] = face;
        const Picture button =
            Drawn(state, [&](const DRAWITEMSTRUCT& item) { DrawColourButton(nullptr, item, palette, 88); });
        EXPECT_GT(Count(button, ColourRef(face)), (kWidth - 6) * (kHeight - 6) / 2);
        EXPECT_EQ(Count(button, kWhite) > 5, text == kWhite) << ColourRef(face);
        EXPECT_EQ(Count(button, kBlack) > 5, text == kBlack);
    }

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
    // In careful mode the focus is seen, on a face of any colour.
    for (uint32_t careful : {0u, 1u}) {
        settings.carefulMode = careful;
        for (const uint8_t grey : std::initializer_list<uint8_t>{0, 128, 255}) {
            RgbTriples palette = {};
            palette[88] = {grey, grey, grey};
            auto colour = [&](const DRAWITEMSTRUCT& item) { DrawColourButton(nullptr, item, palette, 88); };
            const Picture without = Drawn(0, colour), with = Drawn(ODS_FOCUS, colour);
            EXPECT_EQ(Difference(without, with).empty(), !careful) << int{grey};
            if (careful) {
                EXPECT_EQ(with.At(3, 12), grey < 129 ? kWhite : kBlack);
            }
        }
        EXPECT_EQ(Difference(raised, Drawn(ODS_FOCUS, draw)).empty(), !careful);
    }
    EXPECT_EQ(Count(disabled, navy) + Count(disabled, kBlack), 0);
    EXPECT_GT(Count(disabled, GetSysColor(COLOR_BTNSHADOW)), 40);
    EXPECT_GT(Count(disabled, kWhite), 5) << "no light edge";
}

}  // namespace
