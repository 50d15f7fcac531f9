// Editing, deleting and inserting blocks through the main window.
#include "tests/gui/editor_test.h"
#include "texts/string_ids.h"
#include "texts/strings.h"
#include "windows/dialogs/document_operations.h"
#include "windows/ids/insert_ids.h"

namespace {

using CommandsTest = EditorTest;

TEST_F(CommandsTest, SelectEditAndDelete) {
    for (int command : {IDM_EDIT, IDM_DELETE, IDM_INSERT, IDM_INSERT_PICTURES})
        Run(command, {Read("No block is currently selected", IDOK)});
    Open(MakeGif("a.gif"));
    EXPECT_EQ(selectedLine, kNoSelectedLine);
    for (int id : {1, 99, 109, 200, 202, 996, 1001, 1999, 2001, 2002, 65535}) Run(id, {});
    Run(IDM_DELETE, {Read("The header block can't be copied or deleted.", IDOK)});
    EXPECT_EQ(State(), "[HEADER] COMMENT IMAGE COMMENT ");
    for (int line : {2, -1}) {
        Select(line);
        EXPECT_EQ(selectedLine, 2u);
    }
    Select(1);
    Run(IDM_EDIT, {Press(IDCANCEL)});
    EXPECT_EQ(State(), "HEADER [COMMENT] IMAGE COMMENT ");
    DialogAnswers answers({Press(IDOK)});
    DoubleClick();
    EXPECT_EQ(State(), "HEADER [COMMENT] IMAGE COMMENT changed");
    Command(IDM_DELETE);
    EXPECT_EQ(State(), "HEADER [IMAGE] COMMENT changed") << "the same index";
    Select(2);
    Command(IDM_DELETE);
    EXPECT_EQ(State(), "HEADER [IMAGE] changed") << "the new last block";
}

TEST_F(CommandsTest, InsertPutsABlockBehindTheSelectedOneButALoopBehindTheHeader) {
    Open(MakeGif("a.gif"));
    Select(1);
    Run(IDM_INSERT, {Press(IDC_INSERT_CONTROL)});
    EXPECT_EQ(State(), "HEADER [COMMENT] CONTROL IMAGE COMMENT changed");
    EXPECT_EQ(selectedLine, kNoSelectedLine);
    Run(IDM_INSERT, {Press(IDC_INSERT_LOOP)});
    EXPECT_EQ(State(), "[HEADER] LOOP COMMENT CONTROL IMAGE COMMENT changed");
    Run(IDM_INSERT, {Press(IDC_INSERT_COMMENT)});
    Run(IDM_INSERT, {Press(IDC_INSERT_PLAIN_TEXT)});
    const char state[] = "[HEADER] PLAIN TEXT COMMENT LOOP COMMENT CONTROL IMAGE COMMENT ";
    EXPECT_EQ(State(), std::string(state) + "changed");

    documentChanged = false;
    const char second[] = "A LOOP block already exists in this image. Delete it before inserting a new one.";
    Run(IDM_INSERT, {Press(IDC_INSERT_LOOP), Read(second, IDOK)});
    Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), Press(IDCANCEL)});
    faultsAtButton.allocationsUntilFailure = 0;
    Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), Read("There has been an error allocating memory.", IDOK)});
    ChangeHeader(0x07, 1);
    Run(IDM_INSERT, {See({IDC_INSERT_PLAIN_TEXT}, "[off]", IDCANCEL)});
    EXPECT_EQ(State(), state);
}

TEST_F(CommandsTest, ImagesGoInByTheBytesOfTheirNamesAndAskAboutPalettes) {
    Open(MakeGif("a.gif"));
    for (const char* name : {"c.gif", "A1.gif", "b.gif", "e.gif"}) MakeGif(name, 2, 1);
    WriteAll(File("d.gif"), "no picture");
    Select(1);
    auto choose = [this](const char* names) { return DialogAnswers::ChooseFiles({Folder(), names}); };
    const Steps told = Read(
        "d.gif: The file you have attempted to open appears to be corrupt or there was an error allocating memory.",
        IDOK);
    Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), choose("\"d.gif\""), told});
    EXPECT_EQ(State(), "HEADER [COMMENT] IMAGE COMMENT changed");  // kQuirkChosenImagesMarkChanged
    Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), choose(R"("c.gif" "A1.gif" "e.gif" "d.gif" "b.gif")"), told});
    EXPECT_EQ(State(), "HEADER [COMMENT] IMAGE IMAGE IMAGE IMAGE COMMENT changed");
    for (const auto& [index, name] : {std::pair(2, "A1"), {3, "b"}, {4, "c"}})
        EXPECT_EQ(LineOf(index), std::string("IMAGE\xFE ") + name + ".gif 2 x 1, 256 colours");

    ChangeHeader(0x87, 1);
    const Steps all = Press(IDOK, {{IDC_PALETTE_REMAP}});
    const Steps one = Press(IDOK, {{IDC_PALETTE_DITHER}, {IDC_PALETTE_SUBSEQUENT}});
    const std::pair<std::vector<Steps>, unsigned> commands[] = {
        {{all}, 3}, {{one, one, one}, 3}, {{one, all}, 3}, {{one, Press(IDCANCEL)}, 1}};  // which stops the series
    for (const auto& [questions, inserted] : commands) {
        const uint32_t count = document.count;
        Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), choose(R"("A1.gif" "b.gif" "c.gif")")}, questions);
        EXPECT_EQ(document.count, count + inserted);
    }
}

TEST_F(CommandsTest, TheCarefulPaletteQuestionNamesTheFileAndProposesTheLastChoice) {
    const std::string file = File("Tom & J\xE9r\xF4me.gif");
    ChangeHeader(0x87, 1);
    const Ids choices = {IDC_PALETTE_REMAP, IDC_PALETTE_DITHER};
    const char usual[] =
        "The palette of the image you have imported does not match the global palette for this file. You can:";
    const char named[] =
        "The palette of Tom && J\xE9r\xF4me.gif does not match the global palette for this file. You can:";
    auto ask = [&](uint32_t careful, int bitCount, const char* shown, const Changes& changes, int answer) {
        settings.carefulMode = careful;
        Block image = At(kSampleImage);
        image.data = CreateImageBitmap(2, 2, nullptr, bitCount);
        auto steps = [&](HWND dialog) {
            EXPECT_EQ(ControlText(dialog, IDC_PALETTE_TEXT), careful ? named : usual);
            Work(choices, shown, changes, changes.empty() ? shown : "on|off",
                 answer == IDCANCEL ? IDCANCEL : IDOK)(dialog);
        };
        DialogAnswers answers({steps});
        EXPECT_EQ(RunPaletteDialog(hMainWindow, image, Utf8FromWide(WideFrom1252(file))), answer);
    };
    ask(1, 8, "off|on", {{IDC_PALETTE_REMAP}}, IDCANCEL);
    ask(1, 8, "off|on", {{IDC_PALETTE_REMAP}}, kPaletteRemap);
    ask(1, 8, "on|off", {}, kPaletteRemap);
    ask(0, 8, "off|on", {}, kPaletteDither);
    ask(1, 1, "on|[off]", {}, kPaletteRemap);  // the only answer there is: not a choice
    ask(1, 8, "off|on", {}, kPaletteDither);

    // None is too long or too wide for the place that it has.
    for (const std::wstring& name : {std::wstring(60, L'W'), std::wstring(60, L'i'), std::wstring(60, L'\x6587')}) {
        DialogAnswers answers({[](HWND dialog) {
            HWND label = GetDlgItem(dialog, IDC_PALETTE_TEXT);
            wchar_t text[1024];
            GetWindowTextW(label, text, 1024);
            EXPECT_NE(wcsstr(text, L"..."), nullptr);
            RECT room, needed;
            GetClientRect(label, &room);
            needed = room;
            HDC dc = GetDC(label);
            SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(label, WM_GETFONT, 0, 0)));
            DrawTextW(dc, text, -1, &needed, DT_CALCRECT | DT_WORDBREAK);
            ReleaseDC(label, dc);
            EXPECT_LE(needed.right, room.right);
            EXPECT_LE(needed.bottom, room.bottom);
            PressButton(dialog, IDCANCEL);
        }});
        RunPaletteDialog(hMainWindow, At(kSampleImage), Utf8FromWide(name));
    }
}

TEST(ShortFileName, LeavesOutTheMiddleOfALongOne) {
    const std::string a(40, 'a'), b(28, 'b');
    EXPECT_EQ(ShortFileName("C:\\folder\\" + a + ".gif"),
              std::wstring(14, L'a') + L"..." + std::wstring(10, L'a') + L".gif");
    EXPECT_EQ(ShortFileName(b), WideFromUtf8(b));
    EXPECT_EQ(ShortFileName(b, 8), L"bbbb...bbbb");
    const std::wstring face = L"\xD83D\xDE00", script = L"\x6587";  // two units that are one letter, and one
    EXPECT_EQ(ShortFileName(Utf8FromWide(script + face + face + face + script), 10), script + L"..." + script)
        << "no letter is cut in two";
}

TEST_F(CommandsTest, InsertNamesTheFileInThePaletteQuestion) {
    settings.carefulMode = 1;
    Open(MakeGif("a.gif"));
    MakeGif("b.gif", 2, 1);
    Select(1);
    ChangeHeader(0x87, 1);
    auto look = [](HWND dialog) {
        EXPECT_NE(ControlText(dialog, IDC_PALETTE_TEXT).find("of b.gif does"), std::string::npos);
        PressButton(dialog, IDCANCEL);
    };
    Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), DialogAnswers::ChooseFiles({Folder(), "\"b.gif\""}), look});
}

// kQuirkUnofferedChoiceCounts: OK answers also what can't be chosen.
TEST_F(CommandsTest, ThePaletteQuestionOffersWhatIsPossible) {
    // Bits of the image, whether the document is all black, and what the choices and the box show.
    const std::tuple<int, bool, const char*> rows[] = {
        {8, false, "off|on|on"}, {4, true, "[off]|[on]|on"}, {1, false, "on|[off]|on"}, {1, true, "[on]|[off]|on"}};
    for (const auto& [bitCount, black, shown] : rows)
        for (int button : {IDOK, IDCANCEL}) {
            ChangeHeader(0x87, black ? 0 : 1);
            Block image = At(kSampleImage);
            image.data = CreateImageBitmap(2, 2, nullptr, bitCount);
            paletteChoiceForInsert = 77;
            const int choice = bitCount == 1 ? IDC_PALETTE_REMAP : IDC_PALETTE_DITHER;
            DialogAnswers answers(
                {See({IDC_PALETTE_REMAP, IDC_PALETTE_DITHER, IDC_PALETTE_SUBSEQUENT}, shown, button)});
            EXPECT_EQ(RunPaletteDialog(hMainWindow, image), button == IDOK ? choice : kPaletteCancel) << shown;
            EXPECT_EQ(paletteChoiceForInsert, button == IDOK ? choice : 77);
        }
}

}  // namespace

TEST_F(CommandsTest, InsertPicturesTakesEveryKind) {
    const std::string pictures = TEST_PICTURES;
    for (const char* name : {"grey.jpg", "indexes-8.bmp", "one-pixel.png", "palette-transparent.png"})
        WriteAll(File(name), ReadAll(pictures + "/" + name));
    Open(MakeGif("a.gif"));
    Select(0);
    const Steps names = DialogAnswers::ChooseFiles(
        {Folder(), R"("palette-transparent.png" "one-pixel.png" "indexes-8.bmp" "grey.jpg")"});
    Run(IDM_INSERT_PICTURES, {names, Press(IDOK, {{IDC_PALETTE_REMAP}})});
    ASSERT_EQ(State(), "[HEADER] IMAGE IMAGE IMAGE CONTROL IMAGE COMMENT IMAGE COMMENT changed")
        << "sorted by their names";
    const std::tuple<int, int, int> sizes[] = {{1, 16, 24}, {2, 13, 5}, {3, 1, 1}, {5, 3, 2}};
    for (const auto& [index, width, height] : sizes) {
        const ImageFields image = GetImageFields(At(index));
        EXPECT_EQ(std::pair(int{image.width}, int{image.height}), std::pair(width, height)) << index;
    }
    const ControlFields control = GetControlFields(At(4));
    EXPECT_EQ(control.packed, kControlTransparent);
    ImageLock bitmap(At(5).data);
    EXPECT_EQ(GetImagePixel(bitmap, 0, 0), control.transparentIndex);

    WriteAll(File("cut.png"), ReadAll(pictures + "/rows-missing.png"));
    const uint32_t before = document.count;
    Run(IDM_INSERT_PICTURES, {DialogAnswers::ChooseFiles({File("cut.png")}),
                              Read("cut.png: " + std::string(LoadStr(IDS_OPEN_FAILED)), IDOK)});
    EXPECT_EQ(document.count, before);
}
