#include "tests/gui/editor_test.h"

#include "editing/dialogs/edit_block.h"
#include "editing/dialogs/edited_block.h"
#include "platform/wide_text.h"

void EditorTest::SetUp() {
    hInstance = GetModuleHandleW(nullptr);
    hFaceBrush = CreateSolidBrush(GetSysColor(COLOR_BTNFACE));
}

void EditorTest::TearDown() {
    DeleteObject(hFaceBrush);
    hFaceBrush = nullptr;
    EXPECT_EQ(editedBlock, nullptr);
}

int Edit(SampleDocument& document, int index, const std::vector<Steps>& dialogs) {
    DialogAnswers answers;
    for (const Steps& steps : dialogs) answers.Do(steps);
    return EditBlock(nullptr, document.List(), index);
}

Steps Press(int button) {
    return [button](HWND dialog) { PressButton(dialog, button); };
}

Steps Type(int control, const char* text, int button) {
    return [=](HWND dialog) {
        SetText(dialog, control, text);
        PressButton(dialog, button);
    };
}

Steps Read(const std::string& text, int button) {
    return [=](HWND dialog) {
        EXPECT_EQ(ControlText(dialog, 101), text);
        PressButton(dialog, button);
    };
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

void Click(HWND dialog, int control) {
    if (IsEnabled(dialog, control)) SendDlgItemMessageW(dialog, control, BM_CLICK, 0, 0);
}

bool IsEnabled(HWND dialog, int control) {
    return IsWindowEnabled(GetDlgItem(dialog, control));
}

bool IsChecked(HWND dialog, int control) {
    return IsDlgButtonChecked(dialog, control) == BST_CHECKED;
}
