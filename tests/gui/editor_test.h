// What the tests of the editing dialogs share: a document, and short names for what a user does to a dialog.
#pragma once

#include <cstring>
#include <utility>

#include "gif/block_line.h"
#include "platform/faults.h"
#include "platform/wide_text_win32.h"
#include "tests/gui/picture.h"
#include "tests/gui/window_driver.h"
#include "windows/app/shell_state.h"
#include "windows/dialogs/edit_block.h"
#include "windows/ids/command_ids.h"
#include "windows/ids/editor_ids.h"
#include "windows/services/shell_objects.h"

// The blocks of the document: one of every kind. The header has the 256 colours of the web palette. The first image is
// 40 x 30, called "first.gif", and has 16 colours of its own: entry i is (i, 2 i, 3 i), the pixel x, y is x % 16. The
// second one is 20 x 10 and has neither name nor palette; its pixel x, y is 100 + x.
constexpr int kSampleHeader = 0, kSampleImage = 1, kSampleControl = 2, kSamplePlainText = 3, kSampleComment = 4,
              kSampleLoop = 5, kSampleSecondImage = 6, kSampleApplication = 7, kSampleUnknown = 8, kSampleEmpty = 9,
              kSampleBlockNames = 10, kSampleLastControl = 11;

class EditorTest : public ShellTest {
protected:
    using Steps = DialogAnswers::Steps;
    struct Change {
        int control;
        const char* text = nullptr;  // Windows-1252, to type or to choose; without one the control is clicked
    };
    using Changes = std::vector<Change>;
    using Ids = std::vector<int>;

    void SetUp() override {
        ShellTest::SetUp();
        auto append = [](uint16_t kind) {
            Result<Block> made = MakeBlock(&document, kind);
            Block block = made ? *made : OfKind(kind);
            if (!made)
                memcpy(block.descriptor + kIdentifierOffset, "KELMOR\0\0001.0",
                       kIdentifierBytes + kAuthenticationBytes);
            Append(&document, block);
        };
        defaultPlainTextGrid = {80, 25, 8, 16};
        EXPECT_TRUE(NewDocument(&document));
        RgbTriples colours = {};
        for (uint8_t i = 0; i < 16; ++i) colours[i] = {i, static_cast<uint8_t>(2 * i), static_cast<uint8_t>(3 * i)};
        Block image = *MakeImageBlock(&document, MakeImage(40, 30, 4, colours, [](int x, int) { return x % 16; }));
        EXPECT_TRUE(SetBlockName("first.gif", &image));
        PutImageFields(&image, {0, 0, 40, 30, kHasPalette | 3});
        Append(&document, image);
        for (uint16_t kind : {kControlBlock, kPlainTextBlock, kCommentBlock, kLoopBlock}) append(kind);
        image = *MakeImageBlock(&document, MakeImage(20, 10, 8, nullptr, [](int x, int) { return 100 + x; }));
        Append(&document, image);
        for (uint16_t kind : {kApplicationBlock, kUnknownBlock, kEmptyBlock, kBlockNamesBlock, kControlBlock})
            append(kind);
        RenumberBlocks(&document);
    }

    static Block At(int index) { return BlockAt(document, static_cast<uint32_t>(index)); }
    static void Put(const Block& block) { EXPECT_TRUE(PutBlock(&document, block, block.position)); }
    static std::string LineOf(int index) { return FormatBlockLine(At(index)); }
    // All colours become (colour, colour, colour).
    static void ChangeHeader(uint8_t packed, int colour) {
        Block header = At(kSampleHeader);
        PutHeaderFields(&header, {640, 480, packed, 0, 0});
        RgbTriples colours;
        memset(colours, colour, kPaletteBytes);
        EXPECT_TRUE(header.palette.Set(colours));
        Put(header);
    }

    // The main window's lines: their kinds, the selected one in brackets, and "changed" when the document is.
    std::string State() const {
        std::string state;
        int index = 0;
        for (const std::string& line : Lines()) {
            std::string kind = line.substr(0, line.find(kBlockLineSeparator));
            state += index++ == Selection() ? "[" + kind + "] " : kind + " ";
        }
        return state + (documentChanged ? "changed" : "");
    }

    // Gives the command, or edits block `index`, while `dialogs` and then `others` are worked as they appear.
    void Run(int command, std::vector<Steps> dialogs, const std::vector<Steps>& others = {}) {
        dialogs.insert(dialogs.end(), others.begin(), others.end());
        DialogAnswers answers(std::move(dialogs));
        Command(command);
    }
    static int Edit(int index, std::vector<Steps> dialogs, const std::vector<Steps>& others = {}) {
        dialogs.insert(dialogs.end(), others.begin(), others.end());
        DialogAnswers answers(std::move(dialogs));
        return EditBlock(hMainWindow, &document, index);
    }

    // Steps that make the changes in a dialog and end it with the button. The controls must look like `before` and then
    // like `after` (see Shown). Nothing fails any more in it until the button, where `faultsAtButton` come to be once.
    static Steps Work(const Ids& controls, const std::string& before, const Changes& changes, const std::string& after,
                      int button) {
        return [=](HWND dialog) {
            faults = {};
            EXPECT_EQ(Shown(dialog, controls), before);
            for (const auto& [control, text] : changes) {
                const std::wstring wide = WideFrom1252(text ? text : "");
                if (!text) ClickBox(dialog, control);
                for (UINT message : {UINT{WM_SETTEXT}, UINT{CB_SELECTSTRING}})
                    if (text) SendDlgItemMessageW(dialog, control, message, 0, reinterpret_cast<LPARAM>(wide.c_str()));
            }
            EXPECT_EQ(Shown(dialog, controls), after);
            faults = std::exchange(faultsAtButton, {});
            PressButton(dialog, button);
        };
    }
    inline static Faults faultsAtButton;
    static Steps Press(int button, const Changes& changes = {}) { return Work({}, "", changes, "", button); }
    static Steps See(const Ids& ids, const std::string& look, int button) { return Work(ids, look, {}, look, button); }
    static Steps Read(const std::string& text, int button) { return See({101}, text, button); }  // in a message box

    // Steps for the colour grid (the last pixel of a cell) and the eyedropper (a pixel, which must have the colour).
    static Steps ChooseCell(int column, int row) {
        return [=](HWND dialog) {
            RECT client;
            GetClientRect(dialog, &client);
            int cell = client.right / 16;
            SendMessageW(dialog, WM_LBUTTONDOWN, 0, MAKELPARAM((column + 1) * cell - 1, (row + 1) * cell - 1));
        };
    }
    static Steps ClickPixel(int x, int y, COLORREF colour) {
        return [=](HWND window) {
            EXPECT_EQ(PixelAt(window, x, y), colour);
            SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
        };
    }
    static COLORREF PixelAt(HWND window, int x, int y) {
        UpdateWindow(window);
        HDC dc = GetDC(window);
        COLORREF colour = GetPixel(dc, x, y);
        ReleaseDC(window, dc);
        return colour;
    }

    // As a person presses it, the key going to the window that has the focus.
    static void PressKey(WPARAM key, const Ids& modifiers) {
        BYTE state[256] = {}, up[256] = {};
        for (int modifier : modifiers) state[modifier] = 0x80;
        SetKeyboardState(state);
        const bool isAltAlone = modifiers == Ids{VK_MENU};
        SendMessageW(GetFocus(), isAltAlone ? WM_SYSKEYDOWN : WM_KEYDOWN, key, isAltAlone ? 1 << 29 : 0);
        SetKeyboardState(up);
        PumpMessages();
    }

    // What the controls hold, "on|off|640": boxes and radio buttons by their state. In brackets when disabled.
    static std::string Shown(HWND dialog, const Ids& controls) {
        std::string all;
        for (int id : controls) {
            std::string shown = ControlText(dialog, id);
            if (shown.find('&') != std::string::npos)  // the caption of a box
                shown = IsDlgButtonChecked(dialog, id) == BST_CHECKED ? "on" : "off";
            all += IsWindowEnabled(GetDlgItem(dialog, id)) ? shown + "|" : "[" + shown + "]|";
        }
        return all.substr(0, all.size() - 1);
    }
};
