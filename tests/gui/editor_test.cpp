#include "tests/gui/editor_test.h"

#include <cstring>
#include <utility>

#include "editing/dialogs/edit_block.h"
#include "gif/block_line.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "platform/wide_text.h"

void EditorTest::SetUp() {
    ShellTest::SetUp();
    MakeSample();
}

void EditorTest::MakeSample() {
    auto append = [](uint16_t kind, MemoryHandle bitmap = nullptr, const char* name = nullptr) {
        Block block;
        if (!MakeDefaultBlock(nullptr, &document, &block, kind, bitmap, name)) {
            block.kind = kind;
            memcpy(block.descriptor + kIdentifierOffset, "KELMOR\0\0001.0", kIdentifierBytes + kAuthenticationBytes);
        }
        if (name) PutImageFields(&block, {0, 0, 40, 30, kHasPalette | 3});
        EXPECT_TRUE(AppendBlock(&document, &block));
    };
    DestroyBlockList(&document);
    defaultPlainTextGrid = {80, 25, 8, 16};
    EXPECT_TRUE(NewDocument(&document));
    RgbTriples colours = {};
    for (uint8_t i = 0; i < 16; ++i) colours[i] = {i, static_cast<uint8_t>(2 * i), static_cast<uint8_t>(3 * i)};
    append(kImageBlock, MakeImage(40, 30, 4, colours, [](int x, int) { return x % 16; }), "first.gif");
    for (uint16_t kind : {kControlBlock, kPlainTextBlock, kCommentBlock, kLoopBlock}) append(kind);
    append(kImageBlock, MakeImage(20, 10, 8, nullptr, [](int x, int) { return 100 + x; }));
    for (uint16_t kind : {kApplicationBlock, kUnknownBlock, kEmptyBlock, kBlockNamesBlock, kControlBlock}) append(kind);
    RenumberBlocks(&document);
}

Block EditorTest::At(int index) {
    Block block = {};
    EXPECT_TRUE(GetBlock(document, &block, static_cast<uint32_t>(index)));
    return block;
}

std::string EditorTest::LineOf(int index) {
    char line[kBlockLineBytes];
    FormatBlockLine(line, At(index));
    return line;
}

std::string EditorTest::TextOf(int index) {
    Block block = At(index);
    MemoryLock lock(block.data);
    return lock ? std::string(lock.As<char>(), block.dataLength) : std::string();
}

void EditorTest::ChangeHeader(uint8_t packed, int colour) {
    Block header = At(kSampleHeader);
    PutHeaderFields(&header, {640, 480, packed, 0, 0});
    memset(header.palette, colour, kPaletteBytes);
    Put(header);
}

std::string EditorTest::State() const {
    std::string state;
    int index = 0;
    for (const std::string& line : Lines()) {
        std::string kind = line.substr(0, line.find(kBlockLineSeparator));
        state += index++ == Selection() ? "[" + kind + "] " : kind + " ";
    }
    return state + (documentChanged ? "changed" : "");
}

void EditorTest::Run(int command, std::vector<Steps> dialogs) {
    DialogAnswers answers(std::move(dialogs));
    Command(command);
}

int EditorTest::Edit(int index, std::vector<Steps> dialogs) {
    DialogAnswers answers(std::move(dialogs));
    return EditBlock(hMainWindow, &document, index);
}

EditorTest::Steps EditorTest::Work(const std::vector<int>& controls, const std::string& before,
                                   const std::vector<Change>& changes, const std::string& after, int button) {
    return [=](HWND dialog) {
        faults = {};
        EXPECT_EQ(Shown(dialog, controls), before);
        for (const auto& [control, text] : changes) {
            const std::wstring wide = WideFrom1252(text ? text : "");
            if (!text) ClickBox(dialog, control);
            if (text) SetDlgItemTextW(dialog, control, wide.c_str());
            if (text) SendDlgItemMessageW(dialog, control, CB_SELECTSTRING, 0, reinterpret_cast<LPARAM>(wide.c_str()));
        }
        EXPECT_EQ(Shown(dialog, controls), after);
        faults = std::exchange(faultsAtButton, {});
        PressButton(dialog, button);
    };
}

EditorTest::Steps EditorTest::ChooseCell(int column, int row) {
    return [=](HWND dialog) {
        RECT client;
        GetClientRect(dialog, &client);
        int cell = client.right / 16;
        SendMessageW(dialog, WM_LBUTTONDOWN, 0, MAKELPARAM((column + 1) * cell - 1, (row + 1) * cell - 1));
    };
}

EditorTest::Steps EditorTest::ClickPixel(int x, int y, COLORREF colour) {
    return [=](HWND window) {
        EXPECT_EQ(PixelAt(window, x, y), colour);
        SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    };
}

COLORREF EditorTest::PixelAt(HWND window, int x, int y) {
    UpdateWindow(window);
    HDC dc = GetDC(window);
    COLORREF colour = GetPixel(dc, x, y);
    ReleaseDC(window, dc);
    return colour;
}

std::string EditorTest::Shown(HWND dialog, const std::vector<int>& controls) {
    std::string all;
    for (int id : controls) {
        std::string shown = ControlText(dialog, id);
        if (shown.find('&') != std::string::npos)  // the caption of a box
            shown = IsDlgButtonChecked(dialog, id) == BST_CHECKED ? "on" : "off";
        all += IsWindowEnabled(GetDlgItem(dialog, id)) ? shown + "|" : "[" + shown + "]|";
    }
    return all.substr(0, all.size() - 1);
}
