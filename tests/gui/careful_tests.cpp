// Careful mode, each care on and off, and the strip that says what is missing of a file.
#include <filesystem>

#include "platform/faults.h"
#include "tests/gui/editor_test.h"
#include "windows/app/document_commands.h"
#include "windows/app/load_notice.h"
#include "windows/app/recent_files.h"
#include "windows/app/stand_aside.h"
#include "windows/ids/insert_ids.h"
#include "windows/ids/notice_ids.h"
#include "windows/ids/panel_ids.h"
#include "windows/services/careful.h"
#include "windows/services/messages.h"

namespace {

using Names = std::vector<std::string>;
constexpr char kSaveQuestion[] = "Your current GIF file has been changed. Do you wish to save it?";
constexpr char kRestIsLost[] = "The rest of this file was not read and would be lost. Save it all the same?";
constexpr char kWriteFailed[] = "There has been an error writing this file.";
constexpr char kOpenFailed[] =
    "The file you have attempted to open appears to be corrupt or there was an error allocating memory.";

class CarefulTest : public EditorTest {
protected:
    // Steps that look at the name that a file dialog proposes, without its folder.
    static Steps SeeName(const std::string& name, int button) {
        return [=](HWND dialog) {
            const std::string shown = ControlText(dialog, FileNameField(dialog));
            EXPECT_EQ(shown.substr(shown.find_last_of('\\') + 1), name);
            PressButton(dialog, button);
        };
    }
    static Steps ChooseFiles(const Names& texts) { return DialogAnswers::ChooseFiles(texts); }
    // Steps that read the beginning of a message.
    static Steps ReadStart(const std::string& start, int button) {
        return [=](HWND dialog) {
            EXPECT_EQ(ControlText(dialog, 101).substr(0, start.size()), start);
            PressButton(dialog, button);
        };
    }
    void OpenAnd(const std::string& path, const std::vector<Steps>& dialogs) {
        DialogAnswers answers(dialogs);
        Open(path);
    }
    std::string FirstLineOf(const std::string& path) {
        Open(path);
        return Lines().empty() ? "" : Lines()[0];
    }
    // A file that classic reads up to an application block; data and an image follow.
    std::string MakeForeign(const std::string& name) {
        GifBytes bytes;
        bytes.Header("GIF89a", 40, 30, 0x80).SmallImage().Extension(0xFF, "\x0BXMP DataXMP", "abcd").SmallImage();
        WriteAll(File(name), bytes.Add({0x3B}));
        return File(name);
    }
    HWND Strip() const { return GetDlgItem(hMainWindow, IDC_NOTICE); }
    // What the strip says, and "+" behind it when it offers to open the file whole.
    std::string Notice() const {
        if (!Strip()) return "(none)";
        return ControlText(Strip(), IDC_NOTICE_TEXT) + (GetDlgItem(Strip(), IDC_NOTICE_WHOLE) ? "+" : "");
    }
    // In the main window, which a window manager may move about.
    RECT PlaceOf(int control) const {
        RECT place = {};
        GetWindowRect(GetDlgItem(hMainWindow, control), &place);
        MapWindowPoints(nullptr, hMainWindow, reinterpret_cast<POINT*>(&place), 2);
        return place;
    }
};

TEST_F(CarefulTest, TheOptionsMenuSwitchesItAndThePanelDoes) {
    wchar_t text[100];
    HMENU bar = GetMenu(hMainWindow);
    GetMenuStringW(bar, 2, text, 100, MF_BYPOSITION);
    EXPECT_STREQ(text, L"&Options");
    EXPECT_EQ(GetMenuItemCount(bar), 4);
    EXPECT_EQ(GetMenuItemID(GetSubMenu(bar, 2), 0), UINT{IDM_CAREFUL_MODE});
    GetMenuStringW(bar, IDM_CAREFUL_MODE, text, 100, MF_BYCOMMAND);
    EXPECT_STREQ(text, L"&Careful mode");
    auto isChecked = [&] { return (GetMenuState(bar, IDM_CAREFUL_MODE, MF_BYCOMMAND) & MF_CHECKED) != 0; };
    EXPECT_FALSE(isChecked());
    for (bool on : {true, false}) {
        Command(IDM_CAREFUL_MODE);
        EXPECT_EQ(isChecked(), on);
        for (const CareRow& row : Cares()) EXPECT_EQ(Careful(row.care), on) << row.meaning;
    }
    for (bool on : {true, false}) {
        Run(IDM_INFORMATION,
            {Work({IDC_PANEL_CAREFUL_MODE}, on ? "off" : "on", {{IDC_PANEL_CAREFUL_MODE}}, on ? "on" : "off", IDOK)});
        EXPECT_EQ(isChecked(), on);
    }
    EXPECT_EQ(settings.showStartupBanner, 1u) << "the other box of the panel";
}

TEST_F(CarefulTest, DocumentsFromFilesKeepTheirScreenAndNewOnesFitIt) {
    for (bool careful : {false, true}) {
        settings.carefulMode = careful;
        const std::string path = MakeGif("a.gif");
        Open(path);
        documentChanged = true;
        Command(IDM_SAVE);
        EXPECT_EQ(Lines()[0], careful ? "HEADER\xFE GIF89a Screen (640 x 480)" : "HEADER\xFE GIF89a Screen (20 x 10)");
        EXPECT_EQ(FirstLineOf(path), Lines()[0]);
        const std::string made = File(careful ? "careful.gif" : "classic.gif");
        Command(IDM_NEW);
        Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), ChooseFiles({MakeGif("b.gif", 30, 20)})});
        Run(IDM_SAVE_AS, {ChooseFiles({made})});
        EXPECT_EQ(FirstLineOf(made), "HEADER\xFE GIF89a Screen (30 x 20)");
    }
}

TEST_F(CarefulTest, AFailedSaveLeavesTheOldFileAndStopsTheCommand) {
    const std::string other = MakeGif("other.gif");
    for (int command : {IDM_NEW, IDM_CLOSE, IDM_WIZARD, IDM_RECENT_FIRST + 1, IDM_EXIT}) {
        SCOPED_TRACE(command);
        settings.carefulMode = 1;
        Open(other);
        const std::string path = MakeGif("a.gif");
        const Bytes before = ReadAll(path);
        Open(path);
        documentChanged = true;
        faultsAtButton.writesUntilFailure = 0;
        Run(command, {Read(kSaveQuestion, IDYES), [](HWND dialog) {
                          faults = {};
                          EXPECT_EQ(ControlText(dialog, 101).rfind(kWriteFailed, 0), 0u);
                          PressButton(dialog, IDOK);
                      }});
        EXPECT_EQ(ReadAll(path), before);
        EXPECT_TRUE(documentChanged);
        EXPECT_EQ(Title(), "Kelmor Zephyr [ " + path + " ] ");
        ASSERT_TRUE(IsWindow(hMainWindow));
        documentChanged = false;
    }
    // A save dialog that is cancelled; in classic mode the command goes on.
    for (bool careful : {true, false}) {
        settings.carefulMode = careful;
        currentFileName.clear();
        Command(IDM_NEW);
        documentChanged = true;
        Run(IDM_CLOSE, {Press(IDYES), SeeName("untitled.gif", IDCANCEL)});
        EXPECT_EQ(documentChanged, careful);
        EXPECT_EQ(document.count, careful ? 1u : 0u);
        documentChanged = false;
    }
}

TEST_F(CarefulTest, WhoeverClosesTheWindowCancelKeepsIt) {
    settings.carefulMode = 1;
    Open(MakeGif("a.gif"));
    documentChanged = true;
    for (const auto& [message, word] :
         {std::pair(UINT{WM_SYSCOMMAND}, SC_CLOSE), {UINT{WM_CLOSE}, 0}, {UINT{WM_QUERYENDSESSION}, 0}}) {
        DialogAnswers answers({Read(kSaveQuestion, IDCANCEL)});
        EXPECT_EQ(SendMessageW(hMainWindow, message, static_cast<WPARAM>(word), 0), 0);
        EXPECT_TRUE(documentChanged);
    }
    {
        DialogAnswers answers({Read(kSaveQuestion, IDNO)});
        EXPECT_EQ(SendMessageW(hMainWindow, WM_QUERYENDSESSION, 0, 0), TRUE);
        EXPECT_EQ(document.count, 4u) << "the session may go on";
    }
    EnableWindow(hMainWindow, FALSE);  // as while a dialog is open
    EXPECT_EQ(SendMessageW(hMainWindow, WM_QUERYENDSESSION, 0, 0), FALSE);
    SendMessageW(hMainWindow, WM_CLOSE, 0, 0);
    EnableWindow(hMainWindow, TRUE);
    ASSERT_TRUE(IsWindow(hMainWindow));
    DialogAnswers answers({Read(kSaveQuestion, IDNO)});
    SendMessageW(hMainWindow, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(hMainWindow));
}

TEST_F(CarefulTest, TheNameBelongsToTheDocument) {
    const std::string path = MakeGif("a.gif");
    const Bytes before = ReadAll(path);
    settings.carefulMode = 1;
    Open(path);
    Run(IDM_SAVE_AS, {SeeName("a.gif", IDCANCEL)});
    for (bool fromClassic : {false, true}) {  // a document made in classic mode, and saved after the switch
        settings.carefulMode = !fromClassic;
        Command(IDM_NEW);
        settings.carefulMode = 1;
        Run(IDM_SAVE, {SeeName("untitled.gif", IDCANCEL)});
        EXPECT_EQ(ReadAll(path), before);
    }
    Run(IDM_SAVE, {ChooseFiles({File("b.gif")})});
    Run(IDM_SAVE, {});
    Run(IDM_SAVE_AS, {SeeName("b.gif", IDCANCEL)});
    settings.carefulMode = 0;
    Run(IDM_SAVE_AS, {SeeName("untitled.gif", IDCANCEL)});
}

TEST_F(CarefulTest, TheNameToStartWith) {
    const std::string path = MakeGif("a b.gif"), other = MakeGif("c.gif"), quoted = '"' + path + '"';
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {path, path},
        {quoted, path},
        {" \t" + quoted + " ", path},
        {"  " + path + " ", path},
        {quoted + " \"" + other + '"', path},
        {path + " " + other, path},
        {other + " " + path, other},
        {"C:\\no such.gif", "C:\\no such.gif"},
        {"\"C:\\no such.gif", "C:\\no such.gif"},
        {"\"", ""},
        {"  ", ""},
    };
    for (const auto& [arguments, name] : rows) {
        settings.carefulMode = 1;
        EXPECT_EQ(StartName(arguments), name) << arguments;
        settings.carefulMode = 0;
        EXPECT_EQ(StartName(arguments), arguments);
    }
}

// Once the message loop runs.
void CALLBACK ShowAboutOnce(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    PostMessageW(hMainWindow, WM_COMMAND, IDM_ABOUT, 0);
}

TEST_F(CarefulTest, TheProgramStartsInItWithTheFileInQuotationMarks) {
    TearDown(), StartAfresh();  // it makes the window itself
    const std::string path = MakeGif("a b.gif");
    WriteAll(File("KLMZEP.INI"), "ShowStartupBanner = 0\r\nCarefulMode = 1\r\n");
    DialogAnswers answers({[&](HWND about) {
                               EXPECT_EQ(Title(), "Kelmor Zephyr [ " + path + " ] ");
                               EXPECT_EQ(RecentFiles(), Names{path});
                               const UINT state = GetMenuState(GetMenu(hMainWindow), IDM_CAREFUL_MODE, MF_BYCOMMAND);
                               EXPECT_EQ(state, UINT{MF_CHECKED});
                               documentChanged = true;
                               PressButton(about, IDOK);
                               for (int i = 0; i < 2; ++i) PostMessageW(hMainWindow, WM_SYSCOMMAND, SC_CLOSE, 0);
                           },
                           Press(IDCANCEL), Press(IDNO)});
    SetTimer(nullptr, 0, 1, ShowAboutOnce);
    RunEditor(GetModuleHandleW(nullptr), nullptr, ('"' + path + '"').c_str(), SW_SHOW);
    documentChanged = false;
}

TEST_F(CarefulTest, ARecentFileThatIsGoneLeavesTheListAlone) {
    const std::string a = MakeGif("a.gif"), gone = MakeGif("gone.gif"), c = MakeGif("c.gif");
    settings.carefulMode = 1;
    for (const std::string& path : {a, gone, c}) Open(path);
    std::filesystem::remove(WideFromUtf8(gone));
    documentChanged = true;
    Run(IDM_RECENT_FIRST + 1, {ReadStart(gone, IDOK)});
    EXPECT_EQ(RecentFiles(), (Names{c, a}));
    EXPECT_EQ(Title(), "Kelmor Zephyr [ " + c + " ] ");
    EXPECT_TRUE(documentChanged);
    EXPECT_EQ(document.count, 4u);
    WriteAll(File("KLMZEP.INI"), "FileMenuItem = " + gone + "\r\n");  // as it stood there all the time
    WriteSettings(hMainWindow, Folder());
    ReadRecentFiles(hMainWindow, Folder());
    EXPECT_EQ(RecentFiles(), (Names{c, a})) << "merging does not bring it back";
}

TEST_F(CarefulTest, TwoEditorsMergeTheirRecentFiles) {
    const std::string kItem = "FileMenuItem = ";
    const std::tuple<uint32_t, Names, Names, Names> rows[] = {
        // The range, what another editor left in the file meanwhile, and the file then, classic and careful.
        {10,
         {"C:\\theirs.gif", "C:\\1.gif", "C:\\2.gif"},
         {"C:\\ours.gif", "C:\\1.gif", "C:\\2.gif"},
         {"C:\\ours.gif", "C:\\theirs.gif", "C:\\1.gif", "C:\\2.gif"}},
        {3,
         {"C:\\theirs.gif", "C:\\1.gif", "C:\\2.gif"},
         {"C:\\ours.gif", "C:\\1.gif", "C:\\2.gif"},
         {"C:\\ours.gif", "C:\\theirs.gif", "C:\\1.gif"}},
        {10,
         {"c:\\OURS.gif", "relative.gif"},
         {"C:\\ours.gif", "C:\\1.gif", "C:\\2.gif"},
         {"C:\\ours.gif", "C:\\1.gif", "C:\\2.gif"}},
        {0, {"C:\\theirs.gif"}, {}, {}},
    };
    for (const auto& [range, theirs, classic, merged] : rows)
        for (bool careful : {false, true}) {
            TearDown(), SetUp();
            settings.fileMenuRange = range;
            settings.carefulMode = careful;
            auto write = [&](const Names& newestFirst) {
                std::string content;
                for (const std::string& name : newestFirst) content = kItem + name + "\r\n" + content;
                WriteAll(File("KLMZEP.INI"), content);
            };
            write({"C:\\1.gif", "C:\\2.gif"});
            ReadRecentFiles(hMainWindow, Folder());
            AddRecentFile(hMainWindow, "C:\\ours.gif");
            write(theirs);
            Command(IDM_EXIT);
            TearDown(), SetUp();
            ReadRecentFiles(hMainWindow, Folder());
            EXPECT_EQ(RecentFiles(), careful ? merged : classic) << range << theirs[0];
        }
}

TEST_F(CarefulTest, SeveralImagesGoInPastBadOnesWhichAreNamed) {
    settings.carefulMode = 1;
    Open(MakeGif("a.gif"));
    Select(1);
    std::string chosen, named = "No image could be read from:";
    for (int i = 10; i < 22; ++i) {
        const std::string name = std::to_string(i) + ".gif";
        i % 11 == 0 ? (void)MakeGif(name, 2, 1) : WriteAll(File(name), "no picture");
        chosen += '"' + name + "\" ";
        if (i % 11 != 0 && i < 21) named += "\n" + name;
    }
    auto choose = [this](const std::string& names) { return ChooseFiles({Folder(), names}); };
    Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), choose(chosen), Read(named + "\nand 1 more", IDOK)});
    EXPECT_EQ(State(), "HEADER [COMMENT] IMAGE IMAGE COMMENT changed");

    documentChanged = false;
    const std::vector<std::pair<std::string, std::string>> bad = {
        {"\"10.gif\" \"12.gif\"", "No image could be read from:\n10.gif\n12.gif"},
        {"\"10.gif\"", std::string("10.gif: ") + kOpenFailed}};
    for (const auto& [names, told] : bad) Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), choose(names), Read(told, IDOK)});
    EXPECT_EQ(State(), "HEADER [COMMENT] IMAGE IMAGE COMMENT ") << "nothing was inserted";

    ChangeHeader(0x87, 1);
    Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), choose(R"("10.gif" "11.gif" "12.gif")"), Press(IDCANCEL),
                     Read("No image could be read from:\n10.gif", IDOK)});
    EXPECT_EQ(document.count, 5u) << "Cancel at the palette question stops the series";
}

TEST_F(CarefulTest, ImagesBeyondTheScreenAreToldOfWhereItIsNotFitted) {
    const char told[] =
        "The image reaches beyond the screen of 640 x 480, and players cut it off there. The header's editor sets the "
        "screen.";
    const std::string large = MakeGif("large.gif", 641, 2), small = MakeGif("small.gif", 640, 480);
    for (bool careful : {false, true})
        for (bool isNew : {false, true}) {
            settings.carefulMode = careful;
            isNew ? Command(IDM_NEW) : Open(MakeGif("a.gif"));
            const std::vector<Steps> warning(careful && !isNew ? 1 : 0, Read(told, IDOK));
            Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), ChooseFiles({small})});
            Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), ChooseFiles({large})}, warning);
            Select(2);
            Run(IDM_EDIT, {Press(IDOK, {{IDC_IMAGE_LEFT, "1"}})}, warning);
            Run(IDM_EDIT, {Press(IDOK, {{IDC_IMAGE_LEFT, "2"}})});
            documentChanged = false;
        }
}

TEST_F(CarefulTest, TheStripSaysWhatIsMissingAndLeavesTheListInPlace) {
    GifBytes whole, cut, odd, strange;
    whole.Header("GIF89a", 2, 2, 0x80).SmallImage().Add({0x3B});
    cut.Header("GIF89a", 2, 2, 0x80).SmallImage();
    odd.Header("GIF89a", 2, 2, 0x80).SmallImage().Add({0x99, 0x3B});
    // The length of the data is the byte that starts an image.
    strange.Header("GIF89a", 2, 2, 0x80).Add({0x21, 0xFF}).Text("\x0BPICTURESabc").SmallImage().Add({0x3B});
    const std::tuple<Bytes, std::vector<Steps>, std::string> rows[] = {
        {whole, {}, "(none)"},
        {ReadAll(MakeForeign("f.gif")),
         {},
         "This file goes on behind the application block \"XMP Data\"; the rest was not read.+"},
        {cut, {}, "This file ends before its trailer.+"},
        {strange,
         {},
         "The data of the application block \"PICTURES\" was taken for blocks; some of this file was not read.+"},
        {odd, {}, "This file goes on with something that starts no block; the rest was not read.+"},
        {Bytes(200, 'x'), {}, "This is no GIF file: nothing of it was read."},
        {Bytes(cut.begin(), cut.begin() + 22), {Read(kOpenFailed, IDOK)}, "No document could be read from this file.+"},
        {whole, {}, "(none)"},
    };
    const RECT list = PlaceOf(IDC_BLOCK_LIST);
    for (const auto& [bytes, messages, notice] : rows) {
        WriteAll(File("file.gif"), bytes);
        OpenAnd(File("file.gif"), messages);
        EXPECT_EQ(Notice(), notice);
        const RECT now = PlaceOf(IDC_BLOCK_LIST);
        EXPECT_TRUE(EqualRect(&now, &list));
    }
    OpenAnd(File("missing.gif"), {Read(kOpenFailed, IDOK)});
    EXPECT_EQ(Notice(), "(none)") << "there is nothing to open whole";

    Open(File("f.gif"));
    MoveWindow(hMainWindow, 0, 0, 700, 500, TRUE);
    RECT strip = PlaceOf(IDC_NOTICE), place = PlaceOf(IDC_BLOCK_LIST), overlap = {};
    IntersectRect(&overlap, &strip, &place);
    EXPECT_TRUE(EqualRect(&overlap, &strip));
    EXPECT_EQ(strip.bottom, place.bottom);
    EXPECT_EQ(strip.right - strip.left, place.right - place.left);
    EXPECT_LT(strip.bottom - strip.top, 60);
    EXPECT_EQ(ChildWindowFromPoint(hMainWindow, {strip.left + 2, strip.top + 2}), Strip()) << "above the list";
    PressButton(Strip(), IDC_NOTICE_CLOSE);
    PumpMessages();
    EXPECT_EQ(Notice(), "(none)");
    EXPECT_EQ(document.count, 3u);
}

// What the reader reports of a file read whole; the words for a place are the reader's own.
TEST_F(CarefulTest, TheStripCountsTheDamagedPlacesOfAWholeFile) {
    for (int kind = 0; kind <= static_cast<int>(DamageKind::kBytesAfterTrailer); ++kind) {
        Damage damage = {100, 4, 2, static_cast<DamageKind>(kind)};
        ReadReport report;
        report.damages = {damage};
        const LoadNotice one = DescribeLoad(document, kReadDone, report, Manner::kWhole);
        const std::string place = " at line 5 of the list: " + DescribeDamage(damage) + ".";
        EXPECT_EQ(one.text, IsHarmless(damage) ? "" : "1 place of this file is damaged" + place);
        damage.block = -1;
        report.damages.push_back(damage);
        const LoadNotice two = DescribeLoad(document, kReadDone, report, Manner::kWhole);
        EXPECT_EQ(two.text, IsHarmless(damage) ? "" : "2 places of this file are damaged, the first" + place);
        EXPECT_FALSE(one.offersWhole || two.offersWhole);
    }
}

TEST_F(CarefulTest, AltAndItsLetterPressTheStripsButton) {
    auto press = [](wchar_t letter) {
        const auto bar = reinterpret_cast<LPARAM>(GetMenu(hMainWindow));
        return HIWORD(SendMessageW(hMainWindow, WM_MENUCHAR, MAKEWPARAM(letter, 0), bar)) == MNC_CLOSE;
    };
    Open(MakeForeign("f.gif"));
    EXPECT_FALSE(press(L'q'));
    EXPECT_TRUE(press(L'w'));
    PumpMessages();
    EXPECT_TRUE(document.flags & kReadWhole);
    EXPECT_FALSE(press(L'w')) << "it is there no longer";
}

TEST_F(CarefulTest, EscapeTakesTheStripAwayWhereverTheFocusIs) {
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    auto press = [](WPARAM key) {
        SendMessageW(GetFocus(), WM_KEYDOWN, key, 0);
        PumpMessages();
    };
    MakeForeign("f.gif");
    for (int control : {IDC_BLOCK_LIST, 0, IDC_NOTICE_WHOLE, IDC_NOTICE_CLOSE}) {
        SCOPED_TRACE(control);
        Open(File("f.gif"));
        SetFocus(control == IDC_BLOCK_LIST ? list : control ? GetDlgItem(Strip(), control) : hMainWindow);
        press(VK_DOWN);
        EXPECT_NE(Notice(), "(none)");
        press(VK_ESCAPE);
        EXPECT_EQ(Notice(), "(none)");
        EXPECT_EQ(GetFocus(), control == 0 ? hMainWindow : list);
        SetFocus(list);
        press(VK_END);
        EXPECT_EQ(Selection(), 2) << "the list answers its keys";
    }
}

TEST_F(CarefulTest, AReadOnlyFileIsNotReplaced) {
    settings.carefulMode = 1;
    const std::string path = MakeGif("a.gif");
    const Bytes before = ReadAll(path);
    Open(path);
    Select(1);
    Command(IDM_DELETE);
    const std::wstring wide = WideFromUtf8(path);
    ASSERT_TRUE(SetFileAttributesW(wide.c_str(), FILE_ATTRIBUTE_READONLY));
    Run(IDM_SAVE, {ReadStart(kWriteFailed, IDOK)});
    EXPECT_EQ(ReadAll(path), before);
    EXPECT_TRUE(documentChanged);
    ASSERT_TRUE(SetFileAttributesW(wide.c_str(), FILE_ATTRIBUTE_NORMAL));
    Run(IDM_SAVE, {});
    EXPECT_NE(ReadAll(path), before);
}

TEST_F(CarefulTest, WhatIsNoGifFileIsNotHarmedBySaving) {
    settings.carefulMode = 1;
    WriteAll(File("text.gif"), std::string(200, 'x'));
    Open(File("text.gif"));
    EXPECT_EQ(Title(), "Kelmor Zephyr [ " + File("text.gif") + " ] ");
    Run(IDM_SAVE, {ReadStart(kWriteFailed, IDOK)});
    EXPECT_EQ(ReadAll(File("text.gif")), Bytes(200, 'x'));
}

TEST_F(CarefulTest, OpenItWholeDoesSoInEitherModeAndIsSavedWhole) {
    for (bool keeps : {false, true}) {  // the document before, which has changes
        SCOPED_TRACE(keeps);
        const std::string path = MakeForeign("f.gif");
        const Bytes before = ReadAll(path);
        Open(path);
        EXPECT_FALSE(document.flags & kReadWhole);
        documentChanged = true;
        auto press = [this](const std::vector<Steps>& dialogs) {
            DialogAnswers answers(dialogs);
            PressButton(Strip(), IDC_NOTICE_WHOLE);
            PumpMessages();
        };
        press({Read(kSaveQuestion, IDCANCEL)});
        press({Read(kSaveQuestion, IDYES), Read(kRestIsLost, IDNO)});
        EXPECT_TRUE(documentChanged);
        EXPECT_EQ(ReadAll(path), before) << "the rest is not lost by asking for it";
        if (keeps)
            press({Read(kSaveQuestion, IDYES), Read(kRestIsLost, IDYES)});
        else
            press({Read(kSaveQuestion, IDNO)});
        EXPECT_EQ(ReadAll(path) == before, !keeps);
        EXPECT_TRUE(document.flags & kReadWhole);
        EXPECT_EQ(Title(), "Kelmor Zephyr [ " + path + " ] ");
        EXPECT_FALSE(ScreenFollowsImages());
        const std::string header = Lines()[0];
        documentChanged = true;
        faults.writesUntilFailure = 0;  // saved beside the old file
        const Bytes opened = ReadAll(path);
        Run(IDM_SAVE, {[](HWND dialog) { faults = {}, PressButton(dialog, IDOK); }});
        EXPECT_EQ(ReadAll(path), opened);
        Command(IDM_SAVE);
        EXPECT_EQ(Lines()[0], header);
        Command(IDM_CLOSE);
        Run(IDM_OPEN_WHOLE, {});  // there is no strip to ask for it
        EXPECT_EQ(document.count, 0u);
    }
}

TEST_F(CarefulTest, OpenItWholeLeavesTheDocumentWhenTheFileIsGone) {
    const std::string path = MakeForeign("f.gif");
    Open(path);
    documentChanged = true;
    std::filesystem::remove(WideFromUtf8(path));
    Run(IDM_OPEN_WHOLE, {ReadStart(path, IDOK)});
    EXPECT_EQ(document.count, 3u);
    EXPECT_TRUE(documentChanged);
    EXPECT_NE(Notice(), "(none)");
}

TEST_F(CarefulTest, SavingOverAFileThatWasNotReadToItsEndAsksFirst) {
    for (bool careful : {false, true}) {
        const std::string path = MakeForeign("f.gif"), copy = File(careful ? "careful.gif" : "classic.gif");
        const Bytes before = ReadAll(path);
        settings.carefulMode = 0;
        Open(path);
        settings.carefulMode = careful;
        documentChanged = true;
        if (careful) Run(IDM_NEW, {Read(kSaveQuestion, IDYES), Read(kRestIsLost, IDNO)});
        EXPECT_EQ(ReadAll(path), before);
        EXPECT_TRUE(documentChanged);
        EXPECT_NE(Notice(), "(none)");
        Run(IDM_SAVE, {}, std::vector<Steps>(careful ? 1 : 0, Read(kRestIsLost, IDYES)));
        EXPECT_NE(ReadAll(path), before);
        EXPECT_EQ(Notice(), "(none)") << "the file does not go on any more";
        EXPECT_FALSE(documentChanged);
        Run(IDM_SAVE, {});  // there is no more to lose
        Run(IDM_SAVE_AS, {ChooseFiles({copy})});
        EXPECT_TRUE(FileExists(copy));
    }
    settings.carefulMode = 0;
    Open(MakeForeign("f.gif"));
    Run(IDM_SAVE_AS, {ChooseFiles({File("other.gif")})});
    EXPECT_NE(Notice(), "(none)") << "the rest is still to be had";
}

// Kept whole in the settings, shown without their middle.
TEST_F(CarefulTest, LongNamesOfRecentFilesAreShortened) {
    const std::string folder = "C:\\films\\" + std::string(30, 'f') + "\\" + std::string(30, 'g') + "\\";
    const Names names = {"C:\\short.gif", folder + "b.gif", folder + "a.gif"};
    auto add = [&] {
        for (size_t i = names.size(); i-- > 0;) AddRecentFile(hMainWindow, names[i]);
    };
    auto seeAll = [&](const Names& shown) {
        EXPECT_EQ(RecentFiles(), shown);
        EXPECT_EQ(::RecentFiles(hMainWindow), names);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(GetRecentFile(hMainWindow, RecentFileId(i)), names[static_cast<size_t>(i)]);
    };
    const std::string start = "C:\\films\\...\\" + std::string(30, 'g');
    const Names shortNames = {names[0], start + "\\b.gif", start + "\\a.gif"};
    settings.carefulMode = 1;
    add();
    add();  // they are there already
    seeAll(shortNames);
    Command(IDM_CAREFUL_MODE);
    seeAll(names);
    Command(IDM_CAREFUL_MODE);
    seeAll(shortNames);
    WriteSettings(hMainWindow, Folder());
    const Bytes stored = ReadAll(File("KLMZEP.INI"));
    EXPECT_NE(std::string(stored.begin(), stored.end()).find(names[2]), std::string::npos);
    RemoveRecentFile(hMainWindow, RecentFileId(1));
    EXPECT_EQ(::RecentFiles(hMainWindow), (Names{names[0], names[2]}));
    EXPECT_EQ(RecentFiles(), (Names{names[0], start + "\\a.gif"}));
}

// In menus a single & underlines the letter behind it.
TEST_F(CarefulTest, AmpersandsInNamesOfRecentFilesAreShown) {
    const std::string path = MakeGif("b && c & d.gif"), shown = File("b &&&& c && d.gif");
    for (bool careful : {true, false, true}) {
        SCOPED_TRACE(careful);
        if (settings.carefulMode != careful) Command(IDM_CAREFUL_MODE);
        Open(path);
        const std::string text = RecentFiles().at(0);
        EXPECT_EQ(text.substr(text.find_last_of('\\')), (careful ? shown : path).substr(path.find_last_of('\\')));
        EXPECT_EQ(::RecentFiles(hMainWindow), Names{path}) << "and listed once";
        Command(IDM_CLOSE);
        Command(RecentFileId(0));
        EXPECT_TRUE(documentIsNamed);
        EXPECT_EQ(currentFileName, path);
    }
}

// Two editors have the same smallest size, and each comes up in the middle of the screen.
TEST_F(CarefulTest, AWindowStandsAsideOfOthers) {
    // As another program has it, which has its own classes.
    WNDCLASSW about = {};
    about.lpfnWndProc = DefWindowProcW;
    about.hInstance = GetModuleHandleW(L"gdi32.dll");
    about.lpszClassName = kMainWindowClass;
    ASSERT_TRUE(RegisterClassW(&about));
    RECT before = {}, work = {};
    GetWindowRect(hMainWindow, &before);
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    std::vector<HWND> others;
    auto add = [&](POINT at) {
        others.push_back(CreateWindowExW(WS_EX_NOACTIVATE, kMainWindowClass, L"", WS_POPUP | WS_VISIBLE, at.x, at.y, 50,
                                         50, nullptr, nullptr, about.hInstance, nullptr));
    };
    auto corner = [] {
        RECT place = {};
        GetWindowRect(hMainWindow, &place);
        return POINT{place.left, place.top};
    };
    StandAside(hMainWindow);
    EXPECT_EQ(corner().x, before.left) << "there is no other window";
    add({before.left, before.top});
    StandAside(hMainWindow);
    const LONG step = corner().x - before.left;
    EXPECT_GE(step, GetSystemMetrics(SM_CYCAPTION));
    EXPECT_EQ(corner().y - before.top, step);
    StandAside(hMainWindow);
    EXPECT_EQ(corner().x, before.left + step) << "it is aside already";
    add({before.left + step, before.top + step});
    StandAside(hMainWindow);
    EXPECT_EQ(corner().x, before.left + 2 * step);
    // In the corner of the screen there is no room right of it and below.
    const POINT last = {work.right - (before.right - before.left), work.bottom - (before.bottom - before.top)};
    SetWindowPos(hMainWindow, nullptr, last.x, last.y, 0, 0, SWP_NOSIZE);
    add(last);
    StandAside(hMainWindow);
    // A window manager may put its frame there.
    EXPECT_LT(corner().x - work.left, 2 * step);
    EXPECT_LT(corner().y - work.top, 2 * step);
    for (HWND other : others) DestroyWindow(other);
    UnregisterClassW(kMainWindowClass, about.hInstance);
}

// The list's and the file's messages have room for all their lines, and the button stays below them.
TEST_F(CarefulTest, MessagesGrowWithTheirText) {
    for (int lines : {1, 12}) {
        std::wstring text = L"first";
        for (int i = 1; i < lines; ++i) text += L"\nline";
        DialogAnswers answers({[=](HWND dialog) {
            RECT words, button, client;
            GetWindowRect(GetDlgItem(dialog, 101), &words);
            GetWindowRect(GetDlgItem(dialog, IDOK), &button);
            GetClientRect(dialog, &client);
            MapWindowPoints(dialog, nullptr, reinterpret_cast<POINT*>(&client), 2);
            EXPECT_GE(words.bottom - words.top, 12 * lines);
            EXPECT_GT(button.top, words.bottom);
            EXPECT_LT(button.bottom, client.bottom);
            PressButton(dialog, IDOK);
        }});
        MessageBox(hMainWindow, text);
    }
}

}  // namespace
