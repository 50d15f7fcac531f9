// The block editors, worked through their controls, with what the document holds afterwards.
#include <cstring>

#include "app/shell_state.h"
#include "editing/dialogs/edit_block.h"
#include "editing/dialogs/edited_block.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "imaging/standard_palette.h"
#include "platform/faults.h"
#include "resources/editor_ids.h"
#include "tests/gui/editor_test.h"
#include "tests/gui/window_driver.h"

namespace {

using Editors = EditorTest;
using Prepare = std::function<void(SampleDocument&)>;

const char kInUse[] =
    "One or more images in this file are dependant on the global palette. Click on Yes to copy the global palette to "
    "these images or on No to retain the global palette.";

struct Row {
    const char* what;
    int index;
    Prepare prepare;
    std::vector<Steps> dialogs;
    int result;
    Prepare check;
};

void RunRows(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        SampleDocument document;
        if (row.prepare) row.prepare(document);
        EXPECT_EQ(Edit(document, row.index, row.dialogs), row.result);
        if (row.check) row.check(document);
    }
}

HeaderFields HeaderOf(const SampleDocument& document) {
    return GetHeaderFields(document.At(kSampleHeader));
}

void SetPacked(SampleDocument& document, int index, int packedByte, uint8_t packed) {
    Block block = document.At(index);
    block.descriptor[packedByte] = packed;
    document.Put(block);
}

constexpr int kHeaderPacked = 10, kImagePacked = 8, kControlPacked = 1;  // bytes of the descriptors

void MakeHeaderBlack(SampleDocument& document) {
    Block header = document.At(kSampleHeader);
    memset(header.palette, 0, kPaletteBytes);
    header.descriptor[kHeaderPacked] = 7;
    document.Put(header);
}

TEST_F(Editors, Header) {
    RunRows({
        {"OK takes sizes and flags",
         kSampleHeader,
         nullptr,
         {[](HWND dialog) {
             EXPECT_EQ(ControlText(dialog, IDC_HEADER_COLOURS), "256 colours");
             EXPECT_EQ(ControlText(dialog, IDC_HEADER_WIDTH), "640");
             EXPECT_EQ(ControlText(dialog, IDC_HEADER_DEPTH), "480");
             EXPECT_TRUE(IsChecked(dialog, IDC_HEADER_GLOBAL_PALETTE));
             EXPECT_FALSE(IsChecked(dialog, IDC_HEADER_SORTED));
             SetText(dialog, IDC_HEADER_WIDTH, "800");
             SetText(dialog, IDC_HEADER_DEPTH, "70000");
             Click(dialog, IDC_HEADER_SORTED);
             PressButton(dialog, IDOK);
         }},
         kBlockEdited,
         [](SampleDocument& document) {
             EXPECT_EQ(document.LineOf(kSampleHeader), "HEADER\xFE GIF89a Screen (800 x 4464)");
             EXPECT_EQ(HeaderOf(document).packed, 0xC7);
         }},
        {"Cancel forgets everything, a chosen colour too",
         kSampleHeader,
         nullptr,
         {[](HWND dialog) {
              SetText(dialog, IDC_HEADER_WIDTH, "800");
              Click(dialog, IDC_COLOUR);
              EXPECT_EQ(ControlText(dialog, IDC_COLOUR), "17");
              PressButton(dialog, IDCANCEL);
          },
          ChooseCell(17)},
         kBlockUnchanged,
         [](SampleDocument& document) {
             EXPECT_EQ(HeaderOf(document).screenWidth, 640);
             EXPECT_EQ(HeaderOf(document).backgroundIndex, 0);
         }},
        {"OK keeps a chosen colour",
         kSampleHeader,
         nullptr,
         {[](HWND dialog) {
              Click(dialog, IDC_COLOUR);
              PressButton(dialog, IDOK);
          },
          ChooseCell(255)},
         kBlockEdited,
         [](SampleDocument& document) { EXPECT_EQ(HeaderOf(document).backgroundIndex, 255); }},
        {"No keeps the palette that images need",
         kSampleHeader,
         nullptr,
         {[](HWND dialog) {
              Click(dialog, IDC_HEADER_GLOBAL_PALETTE);
              EXPECT_TRUE(IsChecked(dialog, IDC_HEADER_GLOBAL_PALETTE));
              PressButton(dialog, IDOK);
          },
          Read(kInUse, IDNO)},
         kBlockEdited,
         [](SampleDocument& document) { EXPECT_EQ(HeaderOf(document).packed, 0x87); }},
        {"Yes gives images the palette, even when the dialog is cancelled",
         kSampleHeader,
         nullptr,
         {[](HWND dialog) {
              Click(dialog, IDC_HEADER_GLOBAL_PALETTE);
              EXPECT_FALSE(IsChecked(dialog, IDC_HEADER_GLOBAL_PALETTE));
              PressButton(dialog, IDCANCEL);
          },
          Read(kInUse, IDYES)},
         kBlockUnchanged,
         [](SampleDocument& document) {
             Block header = document.At(kSampleHeader), image = document.At(kSampleSecondImage);
             EXPECT_EQ(GetHeaderFields(header).packed, 0x87);
             EXPECT_EQ(GetImageFields(image).packed, 0x87);
             EXPECT_EQ(memcmp(image.palette, header.palette, kPaletteBytes), 0);
             EXPECT_EQ(document.At(kSampleImage).palette[15].blue, 45);
         }},
        {"an unreadable list keeps the palette",
         kSampleHeader,
         nullptr,
         {[](HWND dialog) {
              Click(dialog, IDC_HEADER_GLOBAL_PALETTE);
              EXPECT_TRUE(IsChecked(dialog, IDC_HEADER_GLOBAL_PALETTE));
              PressButton(dialog, IDCANCEL);
          },
          [](HWND dialog) {
              faults.locksUntilFailure = 0;
              PressButton(dialog, IDYES);
          },
          [](HWND dialog) {
              faults.locksUntilFailure = Faults::kNever;
              Read("There has been an error accessing this block.", IDOK)(dialog);
          }},
         kBlockUnchanged,
         nullptr},
        {"nothing is asked when all images have their own",
         kSampleHeader,
         [](SampleDocument& document) { SetPacked(document, kSampleSecondImage, kImagePacked, 0x87); },
         {[](HWND dialog) {
             Click(dialog, IDC_HEADER_GLOBAL_PALETTE);
             PressButton(dialog, IDOK);
         }},
         kBlockEdited,
         [](SampleDocument& document) { EXPECT_EQ(HeaderOf(document).packed, 0x07); }},
        {"an all-black palette is warned of and taken",
         kSampleHeader,
         MakeHeaderBlack,
         {[](HWND dialog) {
              Click(dialog, IDC_HEADER_GLOBAL_PALETTE);
              EXPECT_TRUE(IsChecked(dialog, IDC_HEADER_GLOBAL_PALETTE));
              PressButton(dialog, IDOK);
          },
          Read("There are no colours in the current global palette.", IDOK)},
         kBlockEdited,
         [](SampleDocument& document) { EXPECT_EQ(HeaderOf(document).packed, 0x87); }},
    });
}

TEST_F(Editors, Image) {
    RunRows({
        {"OK takes place and interlacing, and empties the name",
         kSampleImage,
         nullptr,
         {[](HWND dialog) {
             EXPECT_EQ(ControlText(dialog, IDC_IMAGE_WIDTH), "40");
             EXPECT_EQ(ControlText(dialog, IDC_IMAGE_DEPTH), "30");
             EXPECT_EQ(ControlText(dialog, IDC_IMAGE_COLOURS), "16 colours");
             Click(dialog, IDC_IMAGE_LOCAL_PALETTE);  // only shows the flag
             EXPECT_TRUE(IsChecked(dialog, IDC_IMAGE_LOCAL_PALETTE));
             Click(dialog, IDC_IMAGE_INTERLACED);
             SetText(dialog, IDC_IMAGE_LEFT, "7");
             SetText(dialog, IDC_IMAGE_TOP, "65535");
             PressButton(dialog, IDOK);
         }},
         kBlockEdited,
         [](SampleDocument& document) {
             ImageFields image = GetImageFields(document.At(kSampleImage));
             EXPECT_EQ(image.left, 7);
             EXPECT_EQ(image.top, 65535);
             EXPECT_EQ(image.packed, 0xC3);
             char name[kNameBytes];
             EXPECT_TRUE(GetBlockName(name, document.At(kSampleImage)));
             EXPECT_STREQ(name, "");
         }},
        {"Cancel keeps the name",
         kSampleImage,
         nullptr,
         {Type(IDC_IMAGE_LEFT, "7", IDCANCEL)},
         kBlockUnchanged,
         [](SampleDocument& document) {
             EXPECT_EQ(document.LineOf(kSampleImage), "IMAGE\xFE first.gif 40 x 30, 16 colours");
             EXPECT_EQ(GetImageFields(document.At(kSampleImage)).left, 0);
         }},
        {"without a global palette the flag can't be clicked",
         kSampleSecondImage,
         MakeHeaderBlack,
         {[](HWND dialog) {
             EXPECT_FALSE(IsEnabled(dialog, IDC_IMAGE_LOCAL_PALETTE));
             EXPECT_FALSE(IsChecked(dialog, IDC_IMAGE_LOCAL_PALETTE));
             PressButton(dialog, IDOK);
         }},
         kBlockEdited,
         [](SampleDocument& document) { EXPECT_EQ(GetImageFields(document.At(kSampleSecondImage)).packed, 0x07); }},
    });
}

ControlFields ControlOf(const SampleDocument& document) {
    return GetControlFields(document.At(kSampleControl));
}

TEST_F(Editors, Control) {
    RunRows({
        {"OK takes flags, delay and disposal",
         kSampleControl,
         nullptr,
         {[](HWND dialog) {
             EXPECT_EQ(ControlText(dialog, IDC_CONTROL_DELAY), "1");
             EXPECT_FALSE(IsEnabled(dialog, IDC_COLOUR));
             EXPECT_FALSE(IsEnabled(dialog, IDC_EYEDROPPER));
             Click(dialog, IDC_CONTROL_TRANSPARENT);
             EXPECT_TRUE(IsEnabled(dialog, IDC_COLOUR));
             EXPECT_TRUE(IsEnabled(dialog, IDC_EYEDROPPER));
             Click(dialog, IDC_CONTROL_USER_INPUT);
             SendDlgItemMessageW(dialog, IDC_CONTROL_DISPOSAL, CB_SETCURSEL, 3, 0);
             EXPECT_EQ(ControlText(dialog, IDC_CONTROL_DISPOSAL), "Previous image");
             SetText(dialog, IDC_CONTROL_DELAY, "32760");
             PressButton(dialog, IDOK);
         }},
         kBlockEdited,
         [](SampleDocument& document) {
             EXPECT_EQ(ControlOf(document).packed, 0x0F);
             EXPECT_EQ(document.LineOf(kSampleControl), "CONTROL\xFE (delay 32760 1/100ths of a second)");
             RgbTriples none = {};
             EXPECT_EQ(memcmp(document.At(kSampleControl).palette, none, kPaletteBytes), 0);
         }},
        {"the eyedropper takes a pixel of the next image",
         kSampleControl,
         [](SampleDocument& document) { SetPacked(document, kSampleControl, kControlPacked, 1); },
         {[](HWND dialog) {
              Click(dialog, IDC_EYEDROPPER);
              EXPECT_EQ(ControlText(dialog, IDC_COLOUR), "119");
              PressButton(dialog, IDOK);
          },
          ClickPixel(19, 9)},
         kBlockEdited,
         [](SampleDocument& document) { EXPECT_EQ(ControlOf(document).transparentIndex, 119); }},
        {"a cancelled eyedropper and a forgotten toggle change nothing",
         kSampleControl,
         [](SampleDocument& document) { SetPacked(document, kSampleControl, kControlPacked, 1); },
         {[](HWND dialog) {
              Click(dialog, IDC_EYEDROPPER);
              EXPECT_EQ(ControlText(dialog, IDC_COLOUR), "0");
              Click(dialog, IDC_CONTROL_TRANSPARENT);
              PressButton(dialog, IDCANCEL);
          },
          [](HWND window) { SendMessageW(window, WM_RBUTTONUP, 0, 0); }},
         kBlockUnchanged,
         [](SampleDocument& document) { EXPECT_EQ(ControlOf(document).packed, 1); }},
        {"disposal 5 selects nothing and survives",
         kSampleControl,
         [](SampleDocument& document) { SetPacked(document, kSampleControl, kControlPacked, 5 << 2 | 0xE0); },
         {[](HWND dialog) {
             EXPECT_EQ(SendDlgItemMessageW(dialog, IDC_CONTROL_DISPOSAL, CB_GETCOUNT, 0, 0), 4);
             EXPECT_EQ(SendDlgItemMessageW(dialog, IDC_CONTROL_DISPOSAL, CB_GETCURSEL, 0, 0), CB_ERR);
             PressButton(dialog, IDOK);
         }},
         kBlockEdited,
         [](SampleDocument& document) { EXPECT_EQ(ControlOf(document).packed, 5 << 2 | 0xE0); }},
        {"behind all images there is no eyedropper",
         kSampleLastControl,
         [](SampleDocument& document) { SetPacked(document, kSampleLastControl, kControlPacked, 1); },
         {[](HWND dialog) {
             EXPECT_TRUE(IsEnabled(dialog, IDC_COLOUR));
             EXPECT_FALSE(IsEnabled(dialog, IDC_EYEDROPPER));
             PressButton(dialog, IDCANCEL);
         }},
         kBlockUnchanged,
         nullptr},
        {"without colours it can't be edited",
         kSampleControl,
         MakeHeaderBlack,
         {Read("This file has no global palette and no subsequent image blocks can be located.", IDOK)},
         kBlockUnchanged,
         nullptr},
    });
}

PlainTextFields PlainOf(const SampleDocument& document) {
    return GetPlainTextFields(document.At(kSamplePlainText));
}

TEST_F(Editors, PlainText) {
    const PlainTextGrid grid = defaultPlainTextGrid;
    RunRows({
        {"Cancel keeps chosen colours, but neither text nor numbers",
         kSamplePlainText,
         nullptr,
         {[](HWND dialog) {
              Click(dialog, IDC_COLOUR);
              Click(dialog, IDC_SECOND_EYEDROPPER);
              EXPECT_EQ(ControlText(dialog, IDC_COLOUR), "33");
              EXPECT_EQ(ControlText(dialog, IDC_SECOND_COLOUR), "7");
              SetText(dialog, IDC_PLAIN_TEXT, "lost");
              SetText(dialog, IDC_PLAIN_LEFT, "9");
              PressButton(dialog, IDCANCEL);
          },
          ChooseCell(33), ClickPixel(7, 29)},
         kBlockEdited,
         [](SampleDocument& document) {
             EXPECT_EQ(PlainOf(document).foregroundIndex, 33);
             EXPECT_EQ(PlainOf(document).backgroundIndex, 7);
             EXPECT_EQ(PlainOf(document).left, 0);
             EXPECT_EQ(PlainOf(document).gridWidth, 80);
             EXPECT_EQ(document.TextOf(kSamplePlainText), "This space for rent...");
             EXPECT_EQ(defaultPlainTextGrid.width, 80);
         }},
        {"OK clears the grid, for later blocks too",
         kSamplePlainText,
         nullptr,
         {[](HWND dialog) {
             SetText(dialog, IDC_PLAIN_TEXT, "two\r\nlines");
             SetText(dialog, IDC_PLAIN_LEFT, "9");
             SetText(dialog, IDC_PLAIN_TOP, "ten");
             PressButton(dialog, IDOK);
         }},
         kBlockEdited,
         [&grid](SampleDocument& document) {
             const uint8_t fields[] = {9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0};
             EXPECT_EQ(memcmp(document.At(kSamplePlainText).descriptor + 1, fields, sizeof fields), 0);
             EXPECT_EQ(document.TextOf(kSamplePlainText), "two\r\nlines");
             EXPECT_EQ(document.LineOf(kSamplePlainText), "PLAIN TEXT\xFE two");
             EXPECT_EQ(defaultPlainTextGrid.width + defaultPlainTextGrid.height, 0);
             EXPECT_EQ(defaultPlainTextGrid.cellWidth + defaultPlainTextGrid.cellHeight, 0);
             defaultPlainTextGrid = grid;
         }},
        {"without an image before it there is no eyedropper, without colours still a dialog",
         kSamplePlainText,
         [](SampleDocument& document) {
             MakeHeaderBlack(document);
             Block image = document.At(kSampleImage);
             image.kind = kUnknownBlock;
             document.Put(image);
         },
         {[](HWND dialog) {
             EXPECT_FALSE(IsEnabled(dialog, IDC_EYEDROPPER));
             EXPECT_FALSE(IsEnabled(dialog, IDC_SECOND_EYEDROPPER));
             EXPECT_TRUE(IsEnabled(dialog, IDC_COLOUR));
             PressButton(dialog, IDCANCEL);
         }},
         kBlockEdited,
         nullptr},
    });
}

TEST_F(Editors, NumbersAreCutTo16Bits) {
    const struct {
        const char* text;
        int number;
    } rows[] = {{"0", 0}, {"32760", 32760}, {"65535", 65535}, {"70000", 4464}, {"", 0}, {"junk", 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        SampleDocument document;
        EXPECT_EQ(Edit(document, kSampleLoop, {Type(IDC_LOOP_ITERATIONS, row.text, IDOK)}), kBlockEdited);
        EXPECT_EQ(document.LineOf(kSampleLoop), "LOOP\xFE (" + std::to_string(row.number) + " iterations)");
    }
    SampleDocument document;
    EXPECT_EQ(Edit(document, kSampleLoop, {Type(IDC_LOOP_ITERATIONS, "5", IDCANCEL)}), kBlockUnchanged);
    EXPECT_EQ(document.LineOf(kSampleLoop), "LOOP\xFE (0 iterations)");
}

TEST_F(Editors, UpDownsStepTheBlocksValueWithinTheirRange) {
    const struct {
        int block, upDown, minimum;
    } rows[] = {{kSampleHeader, IDC_HEADER_WIDTH_UPDOWN, 1},   {kSampleHeader, IDC_HEADER_DEPTH_UPDOWN, 1},
                {kSampleImage, IDC_IMAGE_LEFT_UPDOWN, 0},      {kSampleImage, IDC_IMAGE_TOP_UPDOWN, 0},
                {kSampleControl, IDC_CONTROL_DELAY_UPDOWN, 0}, {kSamplePlainText, IDC_PLAIN_LEFT_UPDOWN, 0},
                {kSamplePlainText, IDC_PLAIN_TOP_UPDOWN, 0},   {kSampleLoop, IDC_LOOP_ITERATIONS_UPDOWN, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.upDown);
        SampleDocument document;
        Edit(document, row.block, {[&row](HWND dialog) {
                 LRESULT range = SendDlgItemMessageW(dialog, row.upDown, UDM_GETRANGE, 0, 0);
                 EXPECT_EQ(LOWORD(range), 32760);
                 EXPECT_EQ(HIWORD(range), row.minimum);
                 int edit = row.upDown - 10000;
                 SetText(dialog, edit, "1234");  // a position of four digits must be readable again
                 SendDlgItemMessageW(dialog, edit, WM_KEYDOWN, VK_UP, 0);
                 EXPECT_EQ(GetDlgItemInt(dialog, edit, nullptr, FALSE), 1235u);
                 PressButton(dialog, IDCANCEL);
             }});
    }
}

TEST_F(Editors, BlocksWithoutAnEditor) {
    const struct {
        int index, result;
        const char* text;  // null: no message
    } rows[] = {
        {kSampleEmpty, kBlockEdited, "That block can't be edited."},
        {kSampleUnknown, kBlockUnchanged, "That block can't be edited."},
        {kSampleApplication, kBlockUnchanged,
         "Creator:   KELMOR\nAuthentication: 1.0\n\nApplication blocks can't be edited."},
        {kSampleBlockNames, kBlockEdited, nullptr},
        {kSampleLastControl + 1, kBlockInaccessible, nullptr},
        {-1, kBlockInaccessible, nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.index);
        SampleDocument document;
        EXPECT_EQ(Edit(document, row.index, row.text ? std::vector<Steps>{Read(row.text, IDOK)} : std::vector<Steps>{}),
                  row.result);
    }
}

TEST_F(Editors, NestedDialogsHandBackWhatIsEdited) {
    SampleDocument document;
    SetPacked(document, kSampleControl, kControlPacked, 1);
    Edit(document, kSampleControl,
         {[](HWND dialog) {
              Block* edited = Edited<Block>();
              ASSERT_EQ(edited->kind, kControlBlock);
              for (int button : {IDC_COLOUR, IDC_COLOUR, IDC_EYEDROPPER}) {
                  Click(dialog, button);
                  EXPECT_EQ(editedBlock, edited);
                  EXPECT_TRUE(IsWindowEnabled(dialog));
              }
              PressButton(dialog, IDOK);
          },
          [](HWND dialog) {
              EXPECT_NE(Edited<Block>(), nullptr);
              ChooseCell(4)(dialog);
          },
          Press(IDCANCEL), ClickPixel(3, 3)});
    EXPECT_EQ(ControlOf(document).transparentIndex, 103);
}

// The same from the main window's side.
TEST_F(ShellTest, EditedBlockShowsInTheList) {
    Open(MakeGif("a.gif"));
    Select(1);
    DialogAnswers answers;
    answers.Do(Type(IDC_COMMENT_TEXT, "lost", IDCANCEL));
    DoubleClick();
    EXPECT_EQ(Lines()[1], "COMMENT\xFE This space for rent...");
    EXPECT_FALSE(documentChanged);

    answers.Do(Type(IDC_COMMENT_TEXT, "kept", IDOK));
    DoubleClick();
    EXPECT_EQ(Lines()[1], "COMMENT\xFE kept");
    EXPECT_TRUE(documentChanged);
    EXPECT_EQ(Selection(), 1);
}

}  // namespace
