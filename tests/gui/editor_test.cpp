#include "tests/gui/editor_test.h"

#include <cstring>

#include "editing/dialogs/edit_block.h"
#include "editing/dialogs/edited_block.h"
#include "gif/block_line.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "platform/wide_text.h"
#include "tests/gui/picture.h"

void EditorTest::SetUp() {
    hInstance = GetModuleHandleW(nullptr);
    hFaceBrush = CreateSolidBrush(GetSysColor(COLOR_BTNFACE));

    EXPECT_TRUE(NewDocument(&sample_));
    RgbTriples colours = {};
    for (uint8_t i = 0; i < 16; ++i) colours[i] = {i, static_cast<uint8_t>(2 * i), static_cast<uint8_t>(3 * i)};
    Append(kImageBlock, MakeImage(40, 30, 4, colours, [](int x, int) { return static_cast<uint32_t>(x % 16); }),
           "first.gif");
    for (uint16_t kind : {kControlBlock, kPlainTextBlock, kCommentBlock, kLoopBlock}) Append(kind);
    Append(kImageBlock, MakeImage(20, 10, 8, nullptr, [](int x, int) { return static_cast<uint32_t>(100 + x); }));
    for (uint16_t kind : {kApplicationBlock, kUnknownBlock, kEmptyBlock, kBlockNamesBlock, kControlBlock}) Append(kind);
    RenumberBlocks(&sample_);
}

void EditorTest::TearDown() {
    DestroyBlockList(&sample_);
    DeleteObject(hFaceBrush);
    hFaceBrush = nullptr;
    EXPECT_EQ(editedBlock, nullptr);
}

void EditorTest::Append(uint16_t kind, MemoryHandle bitmap, const char* name) {
    Block block;
    if (!MakeDefaultBlock(nullptr, &sample_, &block, kind, bitmap, name)) {
        block.kind = kind;
        memcpy(block.descriptor + kIdentifierOffset,
               "KELMOR\0\0"
               "1.0",
               kIdentifierBytes + kAuthenticationBytes);
    }
    if (name) PutImageFields(&block, {0, 0, 40, 30, kHasPalette | 3});
    EXPECT_TRUE(AppendBlock(&sample_, &block));
}

Block EditorTest::At(int index) const {
    Block block = {};
    EXPECT_TRUE(GetBlock(sample_, &block, static_cast<uint32_t>(index)));
    return block;
}

std::string EditorTest::LineOf(int index) const {
    char line[kBlockLineBytes];
    FormatBlockLine(line, At(index));
    return line;
}

std::string EditorTest::TextOf(int index) const {
    Block block = At(index);
    MemoryLock lock(block.data);
    return lock ? std::string(lock.As<char>(), block.dataLength) : std::string();
}

int EditorTest::Edit(int index, const std::vector<Steps>& dialogs) {
    DialogAnswers answers;
    for (const Steps& steps : dialogs) answers.Do(steps);
    return EditBlock(nullptr, &sample_, index);
}

Steps Press(int button) {
    return [button](HWND dialog) { PressButton(dialog, button); };
}

Steps Then(const Steps& first, int button) {
    return [=](HWND dialog) {
        first(dialog);
        PressButton(dialog, button);
    };
}

Steps Type(int control, const char* text, int button) {
    return Then([=](HWND dialog) { SetText(dialog, control, text); }, button);
}

Steps See(const std::vector<int>& controls, const std::string& shown, int button) {
    return Then([=](HWND dialog) { EXPECT_EQ(Shown(dialog, controls), shown); }, button);
}

Steps Read(const std::string& text, int button) {
    return See({101}, text, button);
}

Steps ChooseCell(int index) {
    return [index](HWND dialog) {
        RECT client;
        GetClientRect(dialog, &client);
        int cell = client.right / 16;
        LPARAM place = MAKELPARAM(index % 16 * cell + cell / 2, index / 16 * cell + cell / 2);
        SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, place);
    };
}

Steps ClickPixel(int x, int y) {
    return [=](HWND window) { SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y)); };
}

void SetText(HWND dialog, int control, const std::string& text) {
    SetDlgItemTextW(dialog, control, WideFrom1252(text).c_str());
}

std::string Shown(HWND dialog, const std::vector<int>& controls) {
    std::string all;
    for (int id : controls) {
        std::string shown = ControlText(dialog, id);
        if (shown.find('&') != std::string::npos)  // the caption of a box
            shown = IsDlgButtonChecked(dialog, id) == BST_CHECKED ? "on" : "off";
        if (!IsWindowEnabled(GetDlgItem(dialog, id))) shown = "[" + shown + "]";
        all += (all.empty() ? "" : "|") + shown;
    }
    return all;
}
