// The block editors, worked through their controls, with what the document holds afterwards.
#include "gif/source_bytes.h"
#include "tests/gui/editor_test.h"

using namespace std::string_literals;

namespace {

using Editors = EditorTest;

TEST_F(Editors, OkKeepsTheChangesAndCancelDoesNot) {
    auto edit = [](int block, const Ids& controls, const char* before, const Changes& changes, const char* after,
                   const std::vector<Steps>& pickers, const std::string& descriptor) {
        for (int button : {IDCANCEL, IDOK}) {
            const bool keeps = button == IDOK || block == kSamplePlainText;
            EXPECT_EQ(Edit(block, {Work(controls, before, changes, after, button)}, pickers),
                      keeps ? kBlockEdited : kBlockUnchanged);
        }
        EXPECT_EQ(memcmp(At(block).descriptor, descriptor.data(), descriptor.size()), 0) << block;
    };
    // kQuirkHeaderSorted: 0x87 becomes 0xC7.
    edit(kSampleHeader, {IDC_HEADER_WIDTH, IDC_HEADER_HEIGHT, IDC_HEADER_COLOURS, IDC_HEADER_SORTED},
         "640|480|256 colours|off",
         {{IDC_HEADER_WIDTH, "800"}, {IDC_HEADER_HEIGHT, "70000"}, {IDC_HEADER_SORTED}, {IDC_COLOUR}},
         "800|70000|256 colours|on", {ChooseCell(15, 15)}, "GIF89a\x20\x03\x70\x11\xC7\xFF\0"s);
    edit(kSampleImage, {IDC_IMAGE_WIDTH, IDC_IMAGE_HEIGHT, IDC_IMAGE_COLOURS, IDC_IMAGE_LEFT, IDC_IMAGE_LOCAL_PALETTE},
         "40|30|16 colours|0|on",
         {{IDC_IMAGE_LEFT, "7"}, {IDC_IMAGE_TOP, "65535"}, {IDC_IMAGE_LOCAL_PALETTE}, {IDC_IMAGE_INTERLACED}},
         "40|30|16 colours|7|on", {}, "\x07\0\xFF\xFF\x28\0\x1E\0\xC3"s);
    edit(kSampleControl, {IDC_CONTROL_DELAY, IDC_CONTROL_DISPOSAL, IDC_COLOUR, IDC_EYEDROPPER}, "1|Nothing|[0]|[]",
         {{IDC_CONTROL_TRANSPARENT}, {IDC_CONTROL_USER_INPUT}, {IDC_CONTROL_DELAY, "32760"}, {IDC_EYEDROPPER}},
         "32760|Nothing|119|", {ClickPixel(19, 9, ColourRef(At(kSampleHeader).palette[119]))},
         "\x04\x03\xF8\x7F\x77\0"s);
    // Drawn over the image before it, which has a palette of its own.
    edit(kSamplePlainText, {IDC_PLAIN_TEXT, IDC_PLAIN_LEFT}, "This space for rent...|0",
         {{IDC_PLAIN_TEXT, "two\r\nlines"}, {IDC_PLAIN_LEFT, "9"}, {IDC_COLOUR}, {IDC_SECOND_EYEDROPPER}},
         "two\r\nlines|9", {ChooseCell(1, 2), ClickPixel(7, 29, RGB(7, 14, 21))},
         "\x0C\x09\0\0\0\0\0\0\0\0\0\x21\x07"s);
    EXPECT_EQ(LineOf(kSampleImage), "IMAGE\xFE  40 x 30, 16 colours") << "the name goes";  // kQuirkImageNameField
    EXPECT_EQ(ColourRef(At(kSampleControl).palette[119]), 0u) << "the palette was only lent";
    RgbTriples seen = {};
    GetImagePalette(ImageLock(At(kSampleSecondImage).data), seen);
    EXPECT_EQ(seen[119], At(kSampleHeader).palette[119]) << "later drawings see the colours of the eyedropper's";
    EXPECT_EQ(GetBlockText(At(kSamplePlainText)), "two\r\nlines");
    EXPECT_EQ(defaultPlainTextGrid.width + defaultPlainTextGrid.cellWidth, 0);  // kQuirkSizesTakenWithoutFields
}

TEST_F(Editors, PlainTextsKeepColoursEvenByCancelAndDoWithout) {
    const Steps cancel = Press(IDCANCEL, {{IDC_PLAIN_TEXT, "lost"}, {IDC_SECOND_COLOUR}});
    EXPECT_EQ(Edit(kSamplePlainText, {cancel, ChooseCell(1, 2)}), kBlockEdited);
    EXPECT_EQ(GetPlainTextFields(At(kSamplePlainText)).backgroundIndex, 33);  // kQuirkCancelKeepsColours
    EXPECT_EQ(LineOf(kSamplePlainText), "PLAIN TEXT\xFE This space for rent...");
    EXPECT_EQ(defaultPlainTextGrid.width, 80);

    const uint8_t disposal5 = 5 << kControlDisposalShift | 0xE1;
    Block last = At(kSampleLastControl), image = At(kSampleImage);
    PutControlFields(&last, {disposal5, 0, 0});
    Put(last);
    const Ids controls = {IDC_CONTROL_DISPOSAL, IDC_COLOUR, IDC_EYEDROPPER};
    EXPECT_EQ(Edit(kSampleLastControl, {See(controls, "|0|[]", IDOK)}), kBlockEdited) << "behind all images";
    EXPECT_EQ(GetControlFields(At(kSampleLastControl)).packed, disposal5);
    Edit(kSampleLastControl, {Press(IDOK, {{IDC_CONTROL_DISPOSAL, "Previous image"}})});
    EXPECT_EQ(GetControlFields(At(kSampleLastControl)).packed, 3 << kControlDisposalShift | 0xE1);

    ChangeHeader(0x07, 0);
    const char noColours[] = "This file has no global palette and no subsequent image blocks can be located.";
    EXPECT_EQ(Edit(kSampleControl, {Read(noColours, IDOK)}), kBlockUnchanged);
    EXPECT_EQ(Edit(kSampleSecondImage, {See({IDC_IMAGE_LOCAL_PALETTE}, "[off]", IDOK)}), kBlockEdited);
    image.kind = kUnknownBlock;
    Put(image);
    Edit(kSamplePlainText, {See({IDC_EYEDROPPER, IDC_SECOND_EYEDROPPER, IDC_COLOUR}, "[]|[]|255", IDCANCEL)});
}

TEST_F(Editors, GlobalPaletteIsDroppedWhenNoImageNeedsIt) {
    // kQuirkDependantText
    const char inUse[] =
        "One or more images in this file are dependant on the global palette. Click on Yes to copy the global palette "
        "to these images or on No to retain the global palette.";
    auto packed = [] {  // of the header and the image
        return GetHeaderFields(At(kSampleHeader)).packed << 8 | GetImageFields(At(kSampleSecondImage)).packed;
    };
    auto click = [](const char* before, const char* after, int button) {
        return Work({IDC_HEADER_GLOBAL_PALETTE}, before, {{IDC_HEADER_GLOBAL_PALETTE}}, after, button);
    };
    Edit(kSampleHeader, {click("on", "on", IDOK), Read(inUse, IDNO)});
    EXPECT_EQ(packed(), 0x8707);
    Edit(kSampleHeader, {click("on", "off", IDCANCEL), Read(inUse, IDYES)});
    EXPECT_EQ(packed(), 0x8787) << "the image has its copy even after Cancel";  // kQuirkPaletteCopiedAtOnce
    Edit(kSampleHeader, {click("on", "off", IDOK)});
    EXPECT_EQ(packed(), 0x0787);
    ChangeHeader(0x07, 0);
    Edit(kSampleHeader, {click("off", "on", IDOK), Read("There are no colours in the current global palette.", IDOK)});
    EXPECT_EQ(packed(), 0x8787);
}

TEST_F(Editors, CommentLosesNothing) {
    auto edit = [](const std::string& text, const Steps& steps, const std::string& taken) {
        Block comment = At(kSampleComment);
        ASSERT_TRUE(SetBlockText(&comment, text.data(), static_cast<uint32_t>(text.size())));
        Put(comment);
        EXPECT_EQ(Edit(kSampleComment, {steps}), kBlockEdited);
        EXPECT_EQ(GetBlockText(At(kSampleComment)), taken);
    };
    std::string everyByte, longText;
    for (int byte = 1; byte <= 255; ++byte) everyByte += static_cast<char>(byte);
    // Words, since an endless one would keep Wine's edit field busy for seconds.
    while (longText.size() < kMaxTextBytes) longText += "\xE9t\xE9 \x80 \x9Cl\xE0\x9D\r\n";
    longText.resize(kMaxTextBytes);
    for (const std::string& text : {everyByte, longText, "  \t a\r\nb\nc\rd\r\n\r\ne\n\nf\r\r\ng \r\n "s})
        edit(text, Press(IDOK), text);
    // kQuirkTextShownUpToZero
    for (const std::string& text : {"seen\0unseen"s, "\0unseen"s, "\0"s}) edit(text, Press(IDOK), text);
    edit("seen\0unseen"s, Press(IDOK, {{IDC_COMMENT_TEXT, "typed"}}), "typed");
    auto type = [](const std::wstring& letters) {
        return [=](HWND dialog) {
            for (wchar_t letter : letters) SendDlgItemMessageW(dialog, IDC_COMMENT_TEXT, WM_CHAR, letter, 0);
            PressButton(dialog, IDOK);
        };
    };
    edit("old", type(L"d\u00E9j\u00E0\r\u20AC 5 \u4E2D "), "d\xE9j\xE0\r\n\x80 5 ? old");
    longText.pop_back();
    edit(longText, type(L"yz"), "y" + longText);
    edit("all", type(L"\x01new"), "new");
    edit("gone", Press(IDOK, {{IDC_COMMENT_TEXT, ""}}), "");
    EXPECT_FALSE(At(kSampleComment).data);
}

TEST_F(Editors, OnlyTheBlockThatWasChangedLosesItsBytes) {
    const Changes dropPalette = {{IDC_HEADER_GLOBAL_PALETTE}};
    const Changes dropAndTakeBack = {{IDC_HEADER_GLOBAL_PALETTE}, {IDC_HEADER_GLOBAL_PALETTE}};
    const Steps yes = Press(IDYES);
    const Steps pixel = ClickPixel(19, 9, ColourRef(At(kSampleHeader).palette[119]));
    const Changes pick = {{IDC_CONTROL_TRANSPARENT}, {IDC_EYEDROPPER}};
    // What is done to which block; the blocks that are encoded from then on, with a "!" behind them when the document
    // counts as changed: without and with careful mode.
    const struct {
        int block;
        Changes changes;
        int button;
        std::vector<Steps> others;
        const char *classic, *careful;
    } rows[] = {
        {kSampleHeader, {}, IDOK, {}, "!", ""},
        {kSampleHeader, {{IDC_HEADER_WIDTH, "800"}}, IDOK, {}, "0 !", "0 !"},
        {kSampleHeader, {{IDC_HEADER_WIDTH, "800"}}, IDCANCEL, {}, "", ""},
        {kSampleHeader, dropPalette, IDOK, {yes}, "0 6 !", "0 6 !"},
        {kSampleHeader, dropPalette, IDCANCEL, {yes}, "6 ", ""},  // kQuirkPaletteCopiedAtOnce
        {kSampleHeader, dropAndTakeBack, IDOK, {yes}, "6 !", ""},
        {kSampleImage, {}, IDOK, {}, "!", ""},
        {kSampleImage, {{IDC_IMAGE_LEFT, "7"}}, IDOK, {}, "!", "!"},  // its bytes have the new place
        {kSampleControl, {}, IDOK, {}, "!", ""},
        {kSampleControl, {{IDC_CONTROL_DELAY, "5"}}, IDOK, {}, "2 !", "2 !"},
        {kSampleControl, pick, IDOK, {pixel}, "2 !", "2 !"},
        {kSampleControl, pick, IDCANCEL, {pixel}, "", ""},
        {kSamplePlainText, {}, IDOK, {}, "!", ""},  // kQuirkSizesTakenWithoutFields
        {kSamplePlainText, {{IDC_PLAIN_TEXT, "new"}}, IDOK, {}, "3 !", "3 !"},
        {kSamplePlainText, {{IDC_COLOUR}}, IDOK, {ChooseCell(1, 2)}, "!", "!"},
        {kSamplePlainText, {{IDC_COLOUR}}, IDCANCEL, {ChooseCell(1, 2)}, "!", ""},  // kQuirkCancelKeepsColours
        {kSampleComment, {}, IDOK, {}, "!", ""},
        {kSampleComment, {{IDC_COMMENT_TEXT, "new"}}, IDOK, {}, "4 !", "4 !"},
        {kSampleLoop, {}, IDOK, {}, "!", ""},
        {kSampleLoop, {{IDC_LOOP_ITERATIONS, "7"}}, IDOK, {}, "5 !", "5 !"},
        {kSampleApplication, {}, IDOK, {}, "", ""},
        {kSampleUnknown, {}, IDOK, {}, "", ""},
        {kSampleEmpty, {}, IDOK, {}, "!", ""},  // kQuirkUneditedCountsAsChanged
    };
    for (Block& block : document.All()) GiveSource(&block, "more bytes than the fields of any block have", "stray");
    const std::vector<Block> before(document.All().begin(), document.All().end());
    for (size_t row = 0; row < std::size(rows); ++row)
        for (uint32_t careful : {0u, 1u}) {
            SCOPED_TRACE(testing::Message() << "row " << row << ", careful " << careful);
            std::ranges::copy(before, document.blocks.get());
            settings.carefulMode = careful;
            const auto& [block, changes, button, others, classicOutcome, carefulOutcome] = rows[row];
            const int result = Edit(block, {Press(button, changes)}, others);
            std::string outcome;
            for (const Block& after : document.All()) {
                if (!HasSource(after)) outcome += std::to_string(after.position) + " ";
                EXPECT_EQ(after.source.stray, 5u) << "what stands before a block stays";
            }
            if (result == kBlockEdited) outcome += "!";
            EXPECT_EQ(outcome, careful ? carefulOutcome : classicOutcome);
        }
    std::ranges::copy(before, document.blocks.get());
    EXPECT_EQ(Edit(kSampleBlockNames, {}), kBlockUnchanged);
}

TEST_F(Editors, CarefulOkKeepsWhatNoFieldShows) {
    settings.carefulMode = 1;
    Edit(kSampleImage, {Press(IDOK, {{IDC_IMAGE_LEFT, "7"}})});
    EXPECT_EQ(LineOf(kSampleImage), "IMAGE\xFE first.gif 40 x 30, 16 colours");
    Edit(kSamplePlainText, {Press(IDOK, {{IDC_PLAIN_LEFT, "7"}})});
    const PlainTextFields text = GetPlainTextFields(At(kSamplePlainText));
    EXPECT_EQ(text.left, 7);
    EXPECT_EQ(std::tuple(text.gridWidth, text.gridHeight, text.cellWidth, text.cellHeight), std::tuple(80, 25, 8, 16));
    EXPECT_EQ(defaultPlainTextGrid.width, 80);

    // Before the palette comes to the images the header has to let go of it.
    Edit(kSampleHeader, {Press(IDOK, {{IDC_HEADER_GLOBAL_PALETTE}}), Press(IDYES)});
    EXPECT_EQ(GetHeaderFields(At(kSampleHeader)).packed, 0x07);
    EXPECT_EQ(GetImageFields(At(kSampleSecondImage)).packed, 0x87);
    EXPECT_EQ(At(kSampleSecondImage).palette[119], At(kSampleHeader).palette[119]);
    // What was agreed to in one dialog is not done by the next one.
    ChangeHeader(0x87, 1);
    Block image = At(kSampleSecondImage);
    PutImageFields(&image, {0, 0, 20, 10, 7});
    Put(image);
    Edit(kSampleHeader, {Press(IDCANCEL, {{IDC_HEADER_GLOBAL_PALETTE}}), Press(IDYES)});
    Edit(kSampleHeader, {Press(IDOK, {{IDC_HEADER_WIDTH, "9"}})});
    EXPECT_EQ(GetImageFields(At(kSampleSecondImage)).packed, 7);
}

TEST_F(Editors, CarefulTextsKeepWhatTheFieldDoesNotShow) {
    settings.carefulMode = 1;
    // What the block holds, what is typed over what is seen of it, and what becomes of it.
    const std::tuple<std::string, const char*, std::string> rows[] = {{"seen\0unseen"s, "typed", "typed\0unseen"s},
                                                                      {"\0unseen"s, "typed", "typed\0unseen"s},
                                                                      {"seen\0unseen"s, "", ""},
                                                                      {"a\nb\rc\x1B"s, "a\r\nb", "a\r\nb"}};
    for (const auto& [held, typed, kept] : rows) {
        Block comment = At(kSampleComment);
        ASSERT_TRUE(SetBlockText(&comment, held.data(), static_cast<uint32_t>(held.size())));
        Put(comment);
        EXPECT_EQ(Edit(kSampleComment, {Press(IDOK)}), kBlockUnchanged) << held;
        EXPECT_EQ(Edit(kSampleComment, {Press(IDOK, {{IDC_COMMENT_TEXT, typed}})}), kBlockEdited) << held;
        EXPECT_EQ(GetBlockText(At(kSampleComment)), kept);
    }
    const char tooLong[] =
        "This text is longer than the 32767 bytes that can be edited here: the rest of it would be lost. The command "
        "line can replace it: zephyr set IN.gif OUT.gif INDEX text=...";
    for (int index : {kSampleComment, kSamplePlainText}) {
        Block block = At(index);
        std::string words;  // since an endless one would keep Wine's edit field busy
        while (words.size() < kMaxTextBytes) words += "word ";
        ASSERT_TRUE(SetBlockText(&block, words.data(), kMaxTextBytes));
        std::string own = index == kSampleComment ? "!\xFE"s : "!\1\x0C"s + std::string(12, '\0');
        for (uint32_t sent = 0; sent <= kMaxTextBytes; sent += 255) own += "\xFF" + std::string(255, 'x');
        GiveSource(&block, own);
        Put(block);
        settings.carefulMode = 1;
        EXPECT_EQ(Edit(index, {Read(tooLong, IDOK)}), kBlockUnchanged);
        settings.carefulMode = 0;
        EXPECT_EQ(Edit(index, {Press(IDOK)}), kBlockEdited);
    }
}

TEST_F(Editors, CarefulNumbersAreRefusedWhereTheyStand) {
    const std::tuple<int, int, const char*> fields[] = {
        {kSampleHeader, IDC_HEADER_WIDTH, "Screen width"}, {kSampleHeader, IDC_HEADER_HEIGHT, "Screen depth"},
        {kSampleImage, IDC_IMAGE_LEFT, "Image left"},      {kSampleImage, IDC_IMAGE_TOP, "Image top"},
        {kSampleControl, IDC_CONTROL_DELAY, "Delay"},      {kSamplePlainText, IDC_PLAIN_LEFT, "Text left"},
        {kSamplePlainText, IDC_PLAIN_TOP, "Text top"},     {kSampleLoop, IDC_LOOP_ITERATIONS, "Iterations"}};
    settings.carefulMode = 1;
    for (const auto& [block, field, name] : fields) {
        SCOPED_TRACE(name);
        const Steps told = Read(name + ": this takes a number from 0 to 65535."s, IDOK);
        const char* wrong[] = {"65536", "99999999999", "-1", "", "12x"};
        auto work = [&, id = field](HWND dialog) {
            for (const char* text : wrong) {
                SetDlgItemTextA(dialog, id, text);
                SetFocus(GetDlgItem(dialog, IDOK));
                PressButton(dialog, IDOK);
                EXPECT_EQ(GetDlgCtrlID(GetFocus()), id) << text;
                DWORD selected = 0;
                SendDlgItemMessageW(dialog, id, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&selected));
                EXPECT_EQ(selected, strlen(text)) << text;
                EXPECT_EQ(ControlText(dialog, id), text);
            }
            SetDlgItemTextA(dialog, id, "65535");
            PressButton(dialog, IDOK);
        };
        EXPECT_EQ(Edit(block, {work}, std::vector(std::size(wrong), told)), kBlockEdited);
    }
    EXPECT_EQ(GetImageFields(At(kSampleImage)).top, 65535);
    EXPECT_EQ(GetControlFields(At(kSampleControl)).delay, 65535);
}

TEST_F(Editors, AnImageWithoutPixelsKeepsItsBytesAndCanBeMoved) {
    const std::string own = ",\1\0\2\0\x14\0\x0A\0\7\x0D"s;
    Block image = At(kSampleSecondImage);
    image.data = nullptr;
    GiveSource(&image, own, "stray");
    Put(image);
    const Steps move = Work({IDC_IMAGE_INTERLACED}, "[off]", {{IDC_IMAGE_LEFT, "258"}}, "[off]", IDOK);
    EXPECT_EQ(Edit(kSampleSecondImage, {move}), kBlockEdited);
    SourceLock source(At(kSampleSecondImage));
    EXPECT_EQ(std::string(source.Own().begin(), source.Own().end()), ",\2\1\0\0"s + own.substr(5));
    EXPECT_EQ(Edit(kSampleControl, {Work({IDC_EYEDROPPER}, "[]", {{IDC_CONTROL_TRANSPARENT}}, "[]", IDCANCEL)}),
              kBlockUnchanged);
    const char bound[] =
        "There is an image here whose picture could not be read. It needs the global palette and can't be given a "
        "copy.";
    const Steps keep = Work({IDC_HEADER_GLOBAL_PALETTE}, "on", {{IDC_HEADER_GLOBAL_PALETTE}}, "on", IDOK);
    Edit(kSampleHeader, {keep, Read(bound, IDOK)});
    EXPECT_EQ(GetHeaderFields(At(kSampleHeader)).packed, 0x87);
    for (int index : {kSampleImage, kSampleSecondImage}) {
        image = At(index);
        image.data = nullptr;
        Put(image);
    }
    Edit(kSamplePlainText, {See({IDC_EYEDROPPER, IDC_SECOND_EYEDROPPER}, "[]|[]", IDCANCEL)});

    // There is no memory for the bytes in their new place.
    faultsAtButton.allocationsUntilFailure = 0;
    const Steps outOfMemory = Read("There has been an error allocating memory.", IDOK);
    settings.carefulMode = 1;  // or the name would fail first
    EXPECT_EQ(Edit(kSampleSecondImage, {Press(IDOK, {{IDC_IMAGE_LEFT, "9"}}), outOfMemory}), kBlockUnchanged);
    EXPECT_EQ(GetImageFields(At(kSampleSecondImage)).left, 258);
}

// kQuirkComentText
TEST_F(Editors, TheBoxAroundACommentKeepsItsCaption) {
    Edit(kSampleComment, {[](HWND dialog) {
             EXPECT_NE(FindWindowExW(dialog, nullptr, L"BUTTON", L"Coment Text"), nullptr);
             PressButton(dialog, IDCANCEL);
         }});
}

TEST_F(Editors, CancelAndFailuresKeepTheOldComment) {
    const std::string line = LineOf(kSampleComment);
    const Steps change = Press(IDOK, {{IDC_COMMENT_TEXT, "new"}});
    const Steps outOfMemory = Read("There has been an error allocating memory.", IDOK);
    EXPECT_EQ(Edit(kSampleComment, {Press(IDCANCEL, {{IDC_COMMENT_TEXT, "new"}})}), kBlockUnchanged);
    faultsAtButton.allocationsUntilFailure = 0;
    EXPECT_EQ(Edit(kSampleComment, {change, outOfMemory}), kBlockEdited);
    faultsAtButton.locksUntilFailure = 0;  // nothing can be read or stored
    EXPECT_EQ(Edit(kSampleComment, {change, outOfMemory}), kBlockEdited);
    faults.locksUntilFailure = 0;  // the text is not read: shown empty, it would be lost with OK
    EXPECT_EQ(Edit(kSampleComment, {outOfMemory}), kBlockUnchanged);
    EXPECT_EQ(LineOf(kSampleComment), line);
}

TEST_F(Editors, UpDownsStepTheBlocksValueWithinTheirRange) {
    for (int block : {kSampleHeader, kSampleImage, kSampleControl, kSamplePlainText, kSampleLoop}) {
        Edit(block, {[minimum = block == kSampleHeader ? 1 : 0](HWND dialog) {
                 HWND upDown = nullptr;
                 while ((upDown = FindWindowExW(dialog, upDown, UPDOWN_CLASSW, nullptr)) != nullptr) {
                     EXPECT_EQ(SendMessageW(upDown, UDM_GETRANGE, 0, 0), MAKELPARAM(32760, minimum));
                     int edit = GetDlgCtrlID(upDown) - 10000;
                     SetDlgItemTextW(dialog, edit, L"1234");  // a position of four digits must be readable again
                     SendDlgItemMessageW(dialog, edit, WM_KEYDOWN, VK_UP, 0);
                     EXPECT_EQ(Shown(dialog, {edit}), "1235");
                 }
                 PressButton(dialog, IDCANCEL);
             }});
    }
}

TEST_F(Editors, LoopsAndBlocksWithoutAnEditor) {
    for (const auto& [typed, taken] : {std::pair("65535", "65535"), {"70000", "4464"}, {"", "0"}}) {
        EXPECT_EQ(Edit(kSampleLoop, {Press(IDOK, {{IDC_LOOP_ITERATIONS, typed}})}), kBlockEdited);
        EXPECT_EQ(LineOf(kSampleLoop), std::string("LOOP\xFE (") + taken + " iterations)");
    }
    Steps refused = Read("That block can't be edited.", IDOK);
    Steps told = Read("Creator:   KELMOR\nAuthentication: 1.0\n\nApplication blocks can't be edited.", IDOK);
    EXPECT_EQ(Edit(kSampleEmpty, {refused}), kBlockEdited);  // kQuirkUneditedCountsAsChanged
    EXPECT_EQ(Edit(kSampleUnknown, {refused}), kBlockUnchanged);
    EXPECT_EQ(Edit(kSampleApplication, {told}), kBlockUnchanged);
    EXPECT_EQ(Edit(kSampleBlockNames, {}), kBlockEdited);
    EXPECT_EQ(Edit(kSampleLastControl + 1, {}), kBlockInaccessible);
}

}  // namespace
