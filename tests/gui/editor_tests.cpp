// The block editors, worked through their controls, with what the document holds afterwards.
#include <cstring>

#include "editing/dialogs/edit_block.h"
#include "editing/dialogs/edited_block.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "platform/faults.h"
#include "resources/editor_ids.h"
#include "tests/gui/editor_test.h"
#include "tests/gui/picture.h"

namespace {

class Editors : public EditorTest {
protected:
    // Puts the text into the comment's block, edits it and expects `taken`.
    static void EditComment(const std::string& text, const Steps& steps, const std::string& taken) {
        Block comment = At(kSampleComment);
        ASSERT_TRUE(SetBlockText(&comment, text.data(), static_cast<uint32_t>(text.size())));
        Put(comment);
        EXPECT_EQ(Edit(kSampleComment, {steps}), kBlockEdited);
        EXPECT_EQ(TextOf(kSampleComment), taken);
    }
};

TEST_F(Editors, Header) {
    auto change = [](HWND dialog) {
        EXPECT_EQ(Shown(dialog, {IDC_HEADER_WIDTH, IDC_HEADER_DEPTH, IDC_HEADER_COLOURS}), "640|480|256 colours");
        EXPECT_EQ(Shown(dialog, {IDC_HEADER_GLOBAL_PALETTE, IDC_HEADER_SORTED, IDC_COLOUR}), "on|off|0");
        SetText(dialog, IDC_HEADER_WIDTH, "800");
        SetText(dialog, IDC_HEADER_DEPTH, "70000");
        ClickBox(dialog, IDC_HEADER_SORTED);
        ClickBox(dialog, IDC_COLOUR);
    };
    EXPECT_EQ(Edit(kSampleHeader, {Then(change, IDCANCEL), ChooseCell(15, 15)}), kBlockUnchanged);
    EXPECT_EQ(Edit(kSampleHeader, {Then(change, IDOK), ChooseCell(15, 15)}), kBlockEdited);
    EXPECT_EQ(LineOf(kSampleHeader), "HEADER\xFE GIF89a Screen (800 x 4464)");
    EXPECT_EQ(GetHeaderFields(At(kSampleHeader)).packed, 0xC7);
    EXPECT_EQ(GetHeaderFields(At(kSampleHeader)).backgroundIndex, 255);
}

TEST_F(Editors, GlobalPaletteIsDroppedWhenNoImageNeedsIt) {
    const char inUse[] =
        "One or more images in this file are dependant on the global palette. Click on Yes to copy the global palette "
        "to these images or on No to retain the global palette.";
    auto click = [](const char* after, int button, std::vector<Steps> questions) {
        questions.insert(questions.begin(), [=](HWND dialog) {
            ClickBox(dialog, IDC_HEADER_GLOBAL_PALETTE);
            See({IDC_HEADER_GLOBAL_PALETTE}, after, button)(dialog);
        });
        return Edit(kSampleHeader, questions);
    };
    auto packed = [] {  // of the header and the image
        return GetHeaderFields(At(kSampleHeader)).packed << 8 | GetImageFields(At(kSampleSecondImage)).packed;
    };
    EXPECT_EQ(click("on", IDOK, {Read(inUse, IDNO)}), kBlockEdited);
    Steps unreadable = Then([](HWND) { faults.locksUntilFailure = 0; }, IDYES);
    Steps told = Read("There has been an error accessing this block.", IDOK);
    EXPECT_EQ(click("on", IDCANCEL, {unreadable, told}), kBlockUnchanged);
    EXPECT_EQ(packed(), 0x8707);
    EXPECT_EQ(click("off", IDCANCEL, {Read(inUse, IDYES)}), kBlockUnchanged);
    EXPECT_EQ(packed(), 0x8787) << "the image has its copy even after Cancel";
    EXPECT_EQ(click("off", IDOK, {}), kBlockEdited);
    EXPECT_EQ(packed(), 0x0787);
    ChangeHeader(0x07, 0);
    EXPECT_EQ(click("on", IDOK, {Read("There are no colours in the current global palette.", IDOK)}), kBlockEdited);
    EXPECT_EQ(packed(), 0x8787);
}

TEST_F(Editors, Image) {
    auto change = [](HWND dialog) {
        EXPECT_EQ(Shown(dialog, {IDC_IMAGE_WIDTH, IDC_IMAGE_DEPTH, IDC_IMAGE_COLOURS, IDC_IMAGE_LEFT}),
                  "40|30|16 colours|0");
        ClickBox(dialog, IDC_IMAGE_LOCAL_PALETTE);  // only shows the flag
        ClickBox(dialog, IDC_IMAGE_INTERLACED);
        EXPECT_EQ(Shown(dialog, {IDC_IMAGE_LOCAL_PALETTE, IDC_IMAGE_INTERLACED}), "on|on");
        SetText(dialog, IDC_IMAGE_LEFT, "7");
        SetText(dialog, IDC_IMAGE_TOP, "65535");
    };
    EXPECT_EQ(Edit(kSampleImage, {Then(change, IDCANCEL)}), kBlockUnchanged);
    EXPECT_EQ(LineOf(kSampleImage), "IMAGE\xFE first.gif 40 x 30, 16 colours");
    EXPECT_EQ(Edit(kSampleImage, {Then(change, IDOK)}), kBlockEdited);
    EXPECT_EQ(LineOf(kSampleImage), "IMAGE\xFE  40 x 30, 16 colours") << "the name goes";
    const ImageFields image = GetImageFields(At(kSampleImage));
    EXPECT_EQ(std::tuple(image.left, image.top, image.packed), std::tuple(7, 65535, 0xC3));
    ChangeHeader(0x07, 0);
    EXPECT_EQ(Edit(kSampleSecondImage, {See({IDC_IMAGE_LOCAL_PALETTE}, "[off]", IDOK)}), kBlockEdited);
}

TEST_F(Editors, Control) {
    auto change = [](HWND dialog) {
        EXPECT_EQ(Shown(dialog, {IDC_CONTROL_DELAY, IDC_COLOUR, IDC_EYEDROPPER}), "1|[0]|[]");
        ClickBox(dialog, IDC_CONTROL_TRANSPARENT);
        ClickBox(dialog, IDC_CONTROL_USER_INPUT);
        SendDlgItemMessageW(dialog, IDC_CONTROL_DISPOSAL, CB_SETCURSEL, 3, 0);
        EXPECT_EQ(Shown(dialog, {IDC_COLOUR, IDC_EYEDROPPER, IDC_CONTROL_DISPOSAL}), "0||Previous image");
        SetText(dialog, IDC_CONTROL_DELAY, "32760");
        ClickBox(dialog, IDC_COLOUR);
        EXPECT_EQ(Shown(dialog, {IDC_COLOUR}), "4");
        ClickBox(dialog, IDC_EYEDROPPER);
        EXPECT_EQ(Shown(dialog, {IDC_COLOUR}), "119");
        EXPECT_TRUE(IsWindowEnabled(dialog));
    };
    const Steps cell = ChooseCell(4, 0), pixel = ClickPixel(19, 9, ColourRef(At(kSampleHeader).palette[119]));
    EXPECT_EQ(Edit(kSampleControl, {Then(change, IDCANCEL), cell, pixel}), kBlockUnchanged);
    EXPECT_EQ(Edit(kSampleControl, {Then(change, IDOK), cell, pixel}), kBlockEdited);
    const ControlFields control = GetControlFields(At(kSampleControl));
    EXPECT_EQ(std::tuple(control.packed, control.delay, control.transparentIndex), std::tuple(0x0F, 32760, 119));
    const RgbTriples none = {};
    EXPECT_EQ(memcmp(At(kSampleControl).palette, none, kPaletteBytes), 0);

    Block last = At(kSampleLastControl);
    const ControlFields disposal5 = {5 << kControlDisposalShift | 0xE1, 0, 0};
    PutControlFields(&last, disposal5);
    Put(last);
    const std::vector<int> shown = {IDC_CONTROL_DISPOSAL, IDC_COLOUR, IDC_EYEDROPPER};
    EXPECT_EQ(Edit(kSampleLastControl, {See(shown, "|0|[]", IDOK)}), kBlockEdited);
    EXPECT_EQ(GetControlFields(At(kSampleLastControl)).packed, disposal5.packed);

    ChangeHeader(0x07, 0);
    const char noColours[] = "This file has no global palette and no subsequent image blocks can be located.";
    EXPECT_EQ(Edit(kSampleControl, {Read(noColours, IDOK)}), kBlockUnchanged);
}

TEST_F(Editors, PlainText) {
    auto change = [](HWND dialog) {
        ClickBox(dialog, IDC_COLOUR);
        ClickBox(dialog, IDC_SECOND_EYEDROPPER);
        EXPECT_EQ(Shown(dialog, {IDC_COLOUR, IDC_SECOND_COLOUR}), "33|7");
        SetText(dialog, IDC_PLAIN_TEXT, "two\r\nlines");
        SetText(dialog, IDC_PLAIN_LEFT, "9");
        SetText(dialog, IDC_PLAIN_TOP, "ten");
    };
    const PlainTextGrid before = defaultPlainTextGrid, none = {};
    auto editAndExpect = [&](int button, const char* fields, const char* text, const PlainTextGrid& newGrid) {
        Steps pixel = ClickPixel(7, 29, RGB(7, 14, 21));  // of the image before the text, which has a palette
        EXPECT_EQ(Edit(kSamplePlainText, {Then(change, button), ChooseCell(1, 2), pixel}), kBlockEdited);
        EXPECT_EQ(memcmp(At(kSamplePlainText).descriptor + 1, fields, 12), 0);
        EXPECT_EQ(TextOf(kSamplePlainText), text);
        EXPECT_EQ(memcmp(&defaultPlainTextGrid, &newGrid, sizeof newGrid), 0);
    };
    editAndExpect(IDCANCEL, "\0\0\0\0\x50\0\x19\0\x08\x10\x21\x07", "This space for rent...", before);
    editAndExpect(IDOK, "\x09\0\0\0\0\0\0\0\0\0\x21\x07", "two\r\nlines", none);

    ChangeHeader(0x07, 0);
    Block image = At(kSampleImage);
    image.kind = kUnknownBlock;
    Put(image);
    // Without colours there is still a dialog.
    Steps see = See({IDC_EYEDROPPER, IDC_SECOND_EYEDROPPER, IDC_COLOUR}, "[]|[]|33", IDCANCEL);
    EXPECT_EQ(Edit(kSamplePlainText, {see}), kBlockEdited);
}

TEST_F(Editors, CommentLosesNothing) {
    std::string everyByte, longText;
    for (int byte = 1; byte <= 255; ++byte) everyByte += static_cast<char>(byte);
    // Words, since an endless one would keep Wine's edit field busy for seconds.
    while (longText.size() < kMaxTextBytes) longText += "\xE9t\xE9 \x80 \x9Cl\xE0\x9D\r\n";
    longText.resize(kMaxTextBytes);
    for (const std::string& text : {everyByte, longText, std::string("  \t a\r\nb\nc\rd\r\n\r\ne\n\nf\r\r\ng \r\n ")})
        EditComment(text, Press(IDOK), text);
    EditComment({"seen\0unseen", 11}, Press(IDOK), "seen");
    auto typeBefore = [](const std::wstring& letters) {
        return Then(
            [=](HWND dialog) {
                HWND edit = GetDlgItem(dialog, IDC_COMMENT_TEXT);
                SendMessageW(edit, EM_SETSEL, 0, 0);
                for (wchar_t letter : letters) SendMessageW(edit, WM_CHAR, letter, 0);
            },
            IDOK);
    };
    EditComment("old", typeBefore(L"d\u00E9j\u00E0\r\u20AC 5 \u4E2D "), "d\xE9j\xE0\r\n\x80 5 ? old");
    longText.pop_back();
    EditComment(longText, typeBefore(L"yz"), "y" + longText);
    EditComment("gone", Type(IDC_COMMENT_TEXT, "", IDOK), "");
    EXPECT_EQ(At(kSampleComment).data, nullptr);
}

TEST_F(Editors, CancelAndFailuresKeepTheOldComment) {
    const char kept[] = "This space for rent...";
    auto failAtOk = [](long Faults::*fault, long after) {
        return [=](HWND dialog) {
            SetText(dialog, IDC_COMMENT_TEXT, "new");
            faults.*fault = after;
            PressButton(dialog, IDOK);
        };
    };
    Steps outOfMemory = Read("There has been an error allocating memory.", IDOK);
    EXPECT_EQ(Edit(kSampleComment, {Type(IDC_COMMENT_TEXT, "lost", IDCANCEL)}), kBlockUnchanged);
    EXPECT_EQ(Edit(kSampleComment, {failAtOk(&Faults::allocationsUntilFailure, 0), outOfMemory}), kBlockEdited);
    EXPECT_EQ(TextOf(kSampleComment), kept);
    // The new text is stored, but the list can't be reached.
    EXPECT_EQ(Edit(kSampleComment, {failAtOk(&Faults::locksUntilFailure, 1)}), kBlockInaccessible);
    faults = {};
    EXPECT_EQ(TextOf(kSampleComment), kept);
    // The list is read, the text is not: shown empty, it would be lost with OK.
    faults.locksUntilFailure = 1;
    EXPECT_EQ(Edit(kSampleComment, {outOfMemory}), kBlockUnchanged);
    EXPECT_EQ(TextOf(kSampleComment), kept);
}

TEST_F(Editors, LoopTakesNumbersCutTo16Bits) {
    for (const auto& [typed, taken] : {std::pair("32760", "32760"), {"65535", "65535"}, {"70000", "4464"}, {"", "0"}}) {
        EXPECT_EQ(Edit(kSampleLoop, {Type(IDC_LOOP_ITERATIONS, typed, IDOK)}), kBlockEdited);
        EXPECT_EQ(LineOf(kSampleLoop), std::string("LOOP\xFE (") + taken + " iterations)");
    }
}

TEST_F(Editors, UpDownsStepTheBlocksValueWithinTheirRange) {
    for (int block : {kSampleHeader, kSampleImage, kSampleControl, kSamplePlainText, kSampleLoop}) {
        auto step = [minimum = block == kSampleHeader ? 1 : 0](HWND dialog) {
            HWND upDown = nullptr;
            while ((upDown = FindWindowExW(dialog, upDown, UPDOWN_CLASSW, nullptr)) != nullptr) {
                EXPECT_EQ(SendMessageW(upDown, UDM_GETRANGE, 0, 0), MAKELPARAM(32760, minimum));
                int edit = GetDlgCtrlID(upDown) - 10000;
                SetText(dialog, edit, "1234");  // a position of four digits must be readable again
                SendDlgItemMessageW(dialog, edit, WM_KEYDOWN, VK_UP, 0);
                EXPECT_EQ(Shown(dialog, {edit}), "1235");
            }
        };
        Edit(block, {Then(step, IDCANCEL)});
    }
}

TEST_F(Editors, BlocksWithoutAnEditor) {
    Steps refused = Read("That block can't be edited.", IDOK);
    Steps told = Read("Creator:   KELMOR\nAuthentication: 1.0\n\nApplication blocks can't be edited.", IDOK);
    EXPECT_EQ(Edit(kSampleEmpty, {refused}), kBlockEdited);
    EXPECT_EQ(Edit(kSampleUnknown, {refused}), kBlockUnchanged);
    EXPECT_EQ(Edit(kSampleApplication, {told}), kBlockUnchanged);
    EXPECT_EQ(Edit(kSampleBlockNames, {}), kBlockEdited);
    EXPECT_EQ(Edit(kSampleLastControl + 1, {}), kBlockInaccessible);
    EXPECT_EQ(Edit(-1, {}), kBlockInaccessible);
}

}  // namespace
