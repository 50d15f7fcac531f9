// The block editors, worked through their controls, with what the document holds afterwards.
#include <cstring>

#include "editing/dialogs/edit_block.h"
#include "editing/dialogs/edited_block.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "platform/faults.h"
#include "resources/editor_ids.h"
#include "tests/gui/editor_test.h"

namespace {

constexpr int kHeaderPacked = 10, kImagePacked = 8, kControlPacked = 1;  // bytes of the descriptors

class Editors : public EditorTest {
protected:
    int Packed(int index, int byte) const { return At(index).descriptor[byte]; }
    void SetPacked(int index, int byte, uint8_t packed) {
        Block block = At(index);
        block.descriptor[byte] = packed;
        Put(block);
    }
    void SetComment(const std::string& text) {
        Block comment = At(kSampleComment);
        ASSERT_TRUE(SetBlockText(&comment, text.data(), static_cast<uint32_t>(text.size())));
        Put(comment);
    }
    void MakeHeaderBlack() {
        SetPacked(kSampleHeader, kHeaderPacked, 7);
        Block header = At(kSampleHeader);
        memset(header.palette, 0, kPaletteBytes);
        Put(header);
    }
};

// For a message box: from here on nothing fails any more.
Steps ReadAfterFault(const char* text) {
    return [=](HWND dialog) {
        faults = {};
        Read(text, IDOK)(dialog);
    };
}

TEST_F(Editors, Header) {
    auto change = [](HWND dialog) {
        EXPECT_EQ(Shown(dialog, {IDC_HEADER_WIDTH, IDC_HEADER_DEPTH, IDC_HEADER_COLOURS}), "640|480|256 colours");
        EXPECT_EQ(Shown(dialog, {IDC_HEADER_GLOBAL_PALETTE, IDC_HEADER_SORTED, IDC_COLOUR}), "on|off|0");
        SetText(dialog, IDC_HEADER_WIDTH, "800");
        SetText(dialog, IDC_HEADER_DEPTH, "70000");
        ClickBox(dialog, IDC_HEADER_SORTED);
        ClickBox(dialog, IDC_COLOUR);
        EXPECT_EQ(Shown(dialog, {IDC_COLOUR}), "255");
    };
    EXPECT_EQ(Edit(kSampleHeader, {Then(change, IDCANCEL), ChooseCell(255)}), kBlockUnchanged);
    EXPECT_EQ(Edit(kSampleHeader, {Then(change, IDOK), ChooseCell(255)}), kBlockEdited);
    EXPECT_EQ(LineOf(kSampleHeader), "HEADER\xFE GIF89a Screen (800 x 4464)");
    EXPECT_EQ(Packed(kSampleHeader, kHeaderPacked), 0xC7);
    EXPECT_EQ(GetHeaderFields(At(kSampleHeader)).backgroundIndex, 255);
}

TEST_F(Editors, GlobalPaletteIsDroppedWhenNoImageNeedsIt) {
    const char inUse[] =
        "One or more images in this file are dependant on the global palette. Click on Yes to copy the global palette "
        "to these images or on No to retain the global palette.";
    auto clickAndSee = [](const char* after, int button) {
        return [=](HWND dialog) {
            ClickBox(dialog, IDC_HEADER_GLOBAL_PALETTE);
            See({IDC_HEADER_GLOBAL_PALETTE}, after, button)(dialog);
        };
    };
    EXPECT_EQ(Edit(kSampleHeader, {clickAndSee("on", IDOK), Read(inUse, IDNO)}), kBlockEdited);
    EXPECT_EQ(Packed(kSampleHeader, kHeaderPacked), 0x87);
    EXPECT_EQ(Packed(kSampleSecondImage, kImagePacked), 0x07);

    Steps unreadable = Then([](HWND) { faults.locksUntilFailure = 0; }, IDYES);
    Steps told = ReadAfterFault("There has been an error accessing this block.");
    EXPECT_EQ(Edit(kSampleHeader, {clickAndSee("on", IDCANCEL), unreadable, told}), kBlockUnchanged);

    EXPECT_EQ(Edit(kSampleHeader, {clickAndSee("off", IDCANCEL), Read(inUse, IDYES)}), kBlockUnchanged);
    const Block header = At(kSampleHeader), image = At(kSampleSecondImage);
    EXPECT_EQ(GetHeaderFields(header).packed, 0x87);
    EXPECT_EQ(GetImageFields(image).packed, 0x87) << "it has its copy even after Cancel";
    EXPECT_EQ(memcmp(image.palette, header.palette, kPaletteBytes), 0);
    EXPECT_EQ(At(kSampleImage).palette[15].blue, 45);

    EXPECT_EQ(Edit(kSampleHeader, {clickAndSee("off", IDOK)}), kBlockEdited);
    EXPECT_EQ(Packed(kSampleHeader, kHeaderPacked), 0x07);
    EXPECT_EQ(Edit(kSampleHeader, {clickAndSee("on", IDCANCEL)}), kBlockUnchanged);
    MakeHeaderBlack();
    Steps warned = Read("There are no colours in the current global palette.", IDOK);
    EXPECT_EQ(Edit(kSampleHeader, {clickAndSee("on", IDOK), warned}), kBlockEdited);
    EXPECT_EQ(Packed(kSampleHeader, kHeaderPacked), 0x87);
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
    const ImageFields image = GetImageFields(At(kSampleImage));
    EXPECT_EQ(image.left, 7);
    EXPECT_EQ(image.top, 65535);
    EXPECT_EQ(image.packed, 0xC3);
    char name[kNameBytes];
    EXPECT_TRUE(GetBlockName(name, At(kSampleImage)));
    EXPECT_STREQ(name, "");

    MakeHeaderBlack();
    EXPECT_EQ(Edit(kSampleSecondImage, {See({IDC_IMAGE_LOCAL_PALETTE}, "[off]", IDOK)}), kBlockEdited);
    EXPECT_EQ(Packed(kSampleSecondImage, kImagePacked), 0x07);
}

TEST_F(Editors, Control) {
    auto change = [](HWND dialog) {
        EXPECT_EQ(Shown(dialog, {IDC_CONTROL_DELAY, IDC_COLOUR, IDC_EYEDROPPER}), "1|[0]|[]");
        ClickBox(dialog, IDC_CONTROL_TRANSPARENT);
        ClickBox(dialog, IDC_CONTROL_USER_INPUT);
        SendDlgItemMessageW(dialog, IDC_CONTROL_DISPOSAL, CB_SETCURSEL, 3, 0);
        EXPECT_EQ(Shown(dialog, {IDC_COLOUR, IDC_EYEDROPPER, IDC_CONTROL_DISPOSAL}), "0||Previous image");
        SetText(dialog, IDC_CONTROL_DELAY, "32760");
        const void* edited = editedBlock;
        for (const auto& [button, index] : {std::pair(IDC_COLOUR, "4"), {IDC_EYEDROPPER, "119"}}) {
            ClickBox(dialog, button);
            EXPECT_EQ(Shown(dialog, {IDC_COLOUR}), index);
            EXPECT_EQ(editedBlock, edited);
            EXPECT_TRUE(IsWindowEnabled(dialog));
        }
    };
    EXPECT_EQ(Edit(kSampleControl, {Then(change, IDCANCEL), ChooseCell(4), ClickPixel(19, 9)}), kBlockUnchanged);
    EXPECT_EQ(Edit(kSampleControl, {Then(change, IDOK), ChooseCell(4), ClickPixel(19, 9)}), kBlockEdited);
    EXPECT_EQ(Packed(kSampleControl, kControlPacked), 0x0F);
    EXPECT_EQ(GetControlFields(At(kSampleControl)).transparentIndex, 119);
    EXPECT_EQ(LineOf(kSampleControl), "CONTROL\xFE (delay 32760 1/100ths of a second)");
    const RgbTriples none = {};
    EXPECT_EQ(memcmp(At(kSampleControl).palette, none, kPaletteBytes), 0);

    const uint8_t disposal5 = 5 << kControlDisposalShift | 0xE1;
    SetPacked(kSampleLastControl, kControlPacked, disposal5);
    auto see = [](HWND dialog) {
        EXPECT_EQ(SendDlgItemMessageW(dialog, IDC_CONTROL_DISPOSAL, CB_GETCOUNT, 0, 0), 4);
        EXPECT_EQ(SendDlgItemMessageW(dialog, IDC_CONTROL_DISPOSAL, CB_GETCURSEL, 0, 0), CB_ERR);
        EXPECT_EQ(Shown(dialog, {IDC_COLOUR, IDC_EYEDROPPER}), "0|[]") << "behind all images";
    };
    EXPECT_EQ(Edit(kSampleLastControl, {Then(see, IDOK)}), kBlockEdited);
    EXPECT_EQ(Packed(kSampleLastControl, kControlPacked), disposal5);

    MakeHeaderBlack();
    const char noColours[] = "This file has no global palette and no subsequent image blocks can be located.";
    EXPECT_EQ(Edit(kSampleControl, {Read(noColours, IDOK)}), kBlockUnchanged);
}

TEST_F(Editors, PlainText) {
    const PlainTextGrid grid = defaultPlainTextGrid;
    auto change = [](HWND dialog) {
        ClickBox(dialog, IDC_COLOUR);
        ClickBox(dialog, IDC_SECOND_EYEDROPPER);
        EXPECT_EQ(Shown(dialog, {IDC_COLOUR, IDC_SECOND_COLOUR}), "33|7");
        SetText(dialog, IDC_PLAIN_TEXT, "two\r\nlines");
        SetText(dialog, IDC_PLAIN_LEFT, "9");
        SetText(dialog, IDC_PLAIN_TOP, "ten");
    };
    const char cancelled[] = "\0\0\0\0\x50\0\x19\0\x08\x10\x21\x07", taken[] = "\x09\0\0\0\0\0\0\0\0\0\x21\x07";
    EXPECT_EQ(Edit(kSamplePlainText, {Then(change, IDCANCEL), ChooseCell(33), ClickPixel(7, 29)}), kBlockEdited);
    EXPECT_EQ(memcmp(At(kSamplePlainText).descriptor + 1, cancelled, 12), 0);
    EXPECT_EQ(TextOf(kSamplePlainText), "This space for rent...");
    EXPECT_EQ(memcmp(&defaultPlainTextGrid, &grid, sizeof grid), 0);

    EXPECT_EQ(Edit(kSamplePlainText, {Then(change, IDOK), ChooseCell(33), ClickPixel(7, 29)}), kBlockEdited);
    EXPECT_EQ(memcmp(At(kSamplePlainText).descriptor + 1, taken, 12), 0);
    EXPECT_EQ(TextOf(kSamplePlainText), "two\r\nlines");
    EXPECT_EQ(defaultPlainTextGrid.width + defaultPlainTextGrid.height, 0);
    EXPECT_EQ(defaultPlainTextGrid.cellWidth + defaultPlainTextGrid.cellHeight, 0);
    defaultPlainTextGrid = grid;

    MakeHeaderBlack();
    Block image = At(kSampleImage);
    image.kind = kUnknownBlock;
    Put(image);
    // Without colours there is still a dialog.
    Steps see = See({IDC_EYEDROPPER, IDC_SECOND_EYEDROPPER, IDC_COLOUR}, "[]|[]|33", IDCANCEL);
    EXPECT_EQ(Edit(kSamplePlainText, {see}), kBlockEdited);
}

const char kNewComment[] = "This space for rent...";

// Lines of words of bytes above 127. (One endless word would keep Wine's edit field busy for seconds.)
std::string LongText(size_t bytes) {
    std::string text;
    while (text.size() < bytes) text += "\xE9t\xE9 \x80 \x9Cl\xE0\x9D\r\n";
    return text.substr(0, bytes);
}

TEST_F(Editors, CommentLosesNothing) {
    std::string everyByte;
    for (int byte = 1; byte <= 255; ++byte) everyByte += static_cast<char>(byte);
    const std::string texts[] = {everyByte, "a\r\nb\nc\rd\r\n\r\ne\n\nf\r\r\ng\r\n", LongText(kMaxTextBytes),
                                 "  \t text \r\n "};
    for (const std::string& text : texts) {
        SetComment(text);
        EXPECT_EQ(Edit(kSampleComment, {Press(IDOK)}), kBlockEdited);
        EXPECT_EQ(TextOf(kSampleComment), text);
    }
    SetComment(std::string("seen\0unseen", 11));
    EXPECT_EQ(Edit(kSampleComment, {Press(IDOK)}), kBlockEdited);
    EXPECT_EQ(TextOf(kSampleComment), "seen");
    EXPECT_EQ(Edit(kSampleComment, {Type(IDC_COMMENT_TEXT, "", IDOK)}), kBlockEdited);
    EXPECT_EQ(At(kSampleComment).data, nullptr);
    EXPECT_EQ(At(kSampleComment).dataLength, 0u);
}

TEST_F(Editors, CommentTakesWhatIsTyped) {
    const std::string nearlyFull = LongText(kMaxTextBytes - 1);
    auto typeBefore = [](const std::wstring& letters) {
        return [=](HWND dialog) {
            HWND edit = GetDlgItem(dialog, IDC_COMMENT_TEXT);
            SendMessageW(edit, EM_SETSEL, 0, 0);
            for (wchar_t letter : letters) SendMessageW(edit, WM_CHAR, letter, 0);
        };
    };
    SetComment("old");
    EXPECT_EQ(Edit(kSampleComment, {Then(typeBefore(L"d\u00E9j\u00E0\r\u20AC 5 \u4E2D "), IDOK)}), kBlockEdited);
    EXPECT_EQ(TextOf(kSampleComment), "d\xE9j\xE0\r\n\x80 5 ? old");
    SetComment(nearlyFull);
    EXPECT_EQ(Edit(kSampleComment, {Then(typeBefore(L"yz"), IDOK)}), kBlockEdited);
    EXPECT_EQ(TextOf(kSampleComment), "y" + nearlyFull);
}

TEST_F(Editors, CancelAndFailuresKeepTheOldComment) {
    EXPECT_EQ(Edit(kSampleComment, {Type(IDC_COMMENT_TEXT, "lost", IDCANCEL)}), kBlockUnchanged);
    EXPECT_EQ(TextOf(kSampleComment), kNewComment);

    auto failAtOk = [](Faults at) {
        return [=](HWND dialog) {
            SetText(dialog, IDC_COMMENT_TEXT, "new");
            faults = at;
            PressButton(dialog, IDOK);
        };
    };
    const Faults noMemory = {0, Faults::kNever, Faults::kNever}, oneLock = {Faults::kNever, Faults::kNever, 1};
    Steps outOfMemory = ReadAfterFault("There has been an error allocating memory.");
    EXPECT_EQ(Edit(kSampleComment, {failAtOk(noMemory), outOfMemory}), kBlockEdited);
    EXPECT_EQ(TextOf(kSampleComment), kNewComment);

    // The new text is stored, but the list can't be reached.
    EXPECT_EQ(Edit(kSampleComment, {failAtOk(oneLock)}), kBlockInaccessible);
    faults = {};
    EXPECT_EQ(TextOf(kSampleComment), kNewComment);

    faults = oneLock;  // the list is read, the text is not: shown empty, it would be lost with OK
    EXPECT_EQ(Edit(kSampleComment, {outOfMemory}), kBlockUnchanged);
    EXPECT_EQ(TextOf(kSampleComment), kNewComment);
}

TEST_F(Editors, LoopTakesNumbersCutTo16Bits) {
    const std::pair<const char*, const char*> rows[] = {{"0", "0"},        {"32760", "32760"}, {"65535", "65535"},
                                                        {"70000", "4464"}, {"", "0"},          {"junk", "0"}};
    for (const auto& [typed, taken] : rows) {
        EXPECT_EQ(Edit(kSampleLoop, {Type(IDC_LOOP_ITERATIONS, typed, IDOK)}), kBlockEdited);
        EXPECT_EQ(LineOf(kSampleLoop), std::string("LOOP\xFE (") + taken + " iterations)");
    }
    EXPECT_EQ(Edit(kSampleLoop, {Type(IDC_LOOP_ITERATIONS, "5", IDCANCEL)}), kBlockUnchanged);
    EXPECT_EQ(LineOf(kSampleLoop), "LOOP\xFE (0 iterations)");
}

TEST_F(Editors, UpDownsStepTheBlocksValueWithinTheirRange) {
    const std::pair<int, int> rows[] = {{kSampleHeader, IDC_HEADER_WIDTH},   {kSampleHeader, IDC_HEADER_DEPTH},
                                        {kSampleImage, IDC_IMAGE_LEFT},      {kSampleImage, IDC_IMAGE_TOP},
                                        {kSampleControl, IDC_CONTROL_DELAY}, {kSamplePlainText, IDC_PLAIN_LEFT},
                                        {kSamplePlainText, IDC_PLAIN_TOP},   {kSampleLoop, IDC_LOOP_ITERATIONS}};
    for (const auto& [block, field] : rows) {
        auto step = [edit = field, minimum = block == kSampleHeader ? 1 : 0](HWND dialog) {
            LRESULT range = SendDlgItemMessageW(dialog, 10000 + edit, UDM_GETRANGE, 0, 0);
            EXPECT_EQ(range, MAKELPARAM(32760, minimum)) << edit;
            SetText(dialog, edit, "1234");  // a position of four digits must be readable again
            SendDlgItemMessageW(dialog, edit, WM_KEYDOWN, VK_UP, 0);
            EXPECT_EQ(Shown(dialog, {edit}), "1235");
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
