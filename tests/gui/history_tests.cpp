// The way back in the editor. That each command of each test is one step which leads back, StepWatch sees to.
#include "platform/faults.h"
#include "tests/gui/editor_test.h"
#include "windows/app/document_history.h"
#include "windows/ids/insert_ids.h"
#include "windows/ids/notice_ids.h"
#include "windows/ids/wizard_ids.h"

namespace {

class EditorHistoryTest : public EditorTest {
protected:
    static constexpr char kSaveQuestion[] = "Your current GIF file has been changed. Do you wish to save it?";

    static Steps ChooseFiles(const std::vector<std::string>& texts) { return DialogAnswers::ChooseFiles(texts); }
    // Unasked about the document before.
    void OpenAfresh(const std::string& path) {
        documentChanged = false;
        Open(path);
    }
    void EditLine(int line, const std::vector<Steps>& dialogs) {
        Select(line);
        Run(IDM_EDIT, dialogs);
    }
    // The names of the steps that would be taken next, "Delete comment|-".
    static std::string Names() { return (UndoName() ? *UndoName() : "-") + "|" + (RedoName() ? *RedoName() : "-"); }
    // The first two items of the Edit menu when it opens; in brackets what is greyed.
    static std::string Menu() {
        HMENU bar = GetMenu(hMainWindow), menu = GetSubMenu(bar, 1);
        SendMessageW(hMainWindow, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), MAKELPARAM(1, FALSE));
        std::string all;
        for (int i = 0; i < 2; ++i) {
            wchar_t text[100] = L"";
            GetMenuStringW(menu, static_cast<UINT>(i), text, 100, MF_BYPOSITION);
            const bool grey = GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION) & MF_GRAYED;
            all += grey ? "[" + Ansi1252FromWide(text) + "]" : Ansi1252FromWide(text);
        }
        return all;
    }
    bool IsInSight(int line) const {
        HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
        RECT client, item;
        GetClientRect(list, &client);
        SendMessageW(list, LB_GETITEMRECT, static_cast<WPARAM>(line), reinterpret_cast<LPARAM>(&item));
        return item.top >= client.top && item.bottom <= client.bottom;
    }
    void InsertComment(int line) {
        Select(line);
        Run(IDM_INSERT, {Press(IDC_INSERT_COMMENT)});
    }
};

TEST_F(EditorHistoryTest, EveryCommandAndDialogComesBackWithItsVeryBytes) {
    GifBytes other;
    WriteAll(File("other.gif"), other.Header("GIF89a", 2, 2, 0x80).SmallImage().Add({0x3B}));
    MakeGif("a.gif", 3, 2), MakeGif("b.gif", 2, 3), MakeGif("c.gif", 3, 3);
    struct Row {
        int command, line;
        std::vector<Steps> dialogs;
        const char* name;
        int undone, redone;  // the lines that are selected then
    };
    const Steps yes = Press(IDYES), image = Press(IDC_INSERT_IMAGE);
    const Row rows[] = {
        {IDM_EDIT, 0, {Press(IDOK, {{IDC_HEADER_WIDTH, "77"}})}, "Edit header", 0, 0},
        {IDM_EDIT, 1, {Press(IDOK, {{IDC_IMAGE_LEFT, "5"}})}, "Edit image", 1, 1},
        {IDM_EDIT, 2, {Press(IDOK, {{IDC_CONTROL_DELAY, "9"}})}, "Edit control block", 2, 2},
        {IDM_EDIT, 3, {Press(IDOK, {{IDC_PLAIN_TEXT, "T"}})}, "Edit plain text", 3, 3},
        {IDM_EDIT, 4, {Press(IDOK, {{IDC_COMMENT_TEXT, "C"}})}, "Edit comment", 4, 4},
        {IDM_EDIT, 4, {Press(IDOK, {{IDC_COMMENT_TEXT, ""}})}, "Edit comment", 4, 4},
        {IDM_EDIT, 5, {Press(IDOK, {{IDC_LOOP_ITERATIONS, "3"}})}, "Edit loop block", 5, 5},
        {IDM_EDIT, 0, {Press(IDOK, {{IDC_COLOUR}}), ChooseCell(9, 0)}, "Edit header", 0, 0},
        {IDM_DUPLICATE, 3, {}, "Duplicate plain text", 3, 4},
        {IDM_MOVE_DOWN, 4, {}, "Move plain text", 4, 4},
        {IDM_MOVE_UP, 5, {}, "Move plain text", 4, 4},
        {IDM_DELETE, 4, {}, "Delete plain text", 4, 4},
        {IDM_DELETE, 5, {}, "Delete loop block", 5, 5},
        {IDM_INSERT, 7, {Press(IDC_INSERT_LOOP)}, "Insert loop block", 0, 1},
        {IDM_INSERT, 2, {Press(IDC_INSERT_CONTROL)}, "Insert control block", 2, 3},
        {IDM_INSERT, 2, {Press(IDC_INSERT_COMMENT)}, "Insert comment", 2, 3},
        {IDM_INSERT, 0, {Press(IDC_INSERT_PLAIN_TEXT)}, "Insert plain text", 0, 1},
        {IDM_INSERT, 4, {image, ChooseFiles({Folder(), "\"c.gif\""})}, "Insert image", 4, 5},
        {IDM_INSERT, 4, {image, ChooseFiles({Folder(), R"("a.gif" "b.gif")"})}, "Insert 2 images", 4, 5},
        {IDM_INSERT, 4, {image, ChooseFiles({Folder(), "\"other.gif\""}), Press(IDOK)}, "Insert image", 4, 5},
        {IDM_DELETE, 18, {}, "Delete control block", 18, 17},  // the last one
        {IDM_DELETE, 17, {}, "Delete block names", 17, 16},
        {IDM_DELETE, 16, {}, "Delete empty block", 16, 15},
        {IDM_DELETE, 15, {}, "Delete unknown block", 15, 14},
        {IDM_DELETE, 14, {}, "Delete application block", 14, 13},
        {IDM_EDIT, 0, {Press(IDOK, {{IDC_HEADER_GLOBAL_PALETTE}}), yes}, "Edit header", 0, 0},
        {IDM_SAVE_AS, 3, {ChooseFiles({File("out.gif")})}, "Fit screen", 0, 0},
    };
    for (bool careful : {false, true}) {
        TearDown(), SetUp();
        DeleteFileW(WideFromUtf8(File("out.gif")).c_str());
        settings.carefulMode = careful;
        document.flags |= kMadeHere;
        std::vector<std::string> states = {StateOf(document)};
        for (const Row& row : rows) {
            SCOPED_TRACE(testing::Message() << row.name << careful << row.line);
            FillBlockListView(hMainWindow, &document);
            Select(row.line);
            Run(row.command, row.dialogs);
            EXPECT_EQ(Names(), std::string(row.name) + "|-");
            states.push_back(StateOf(document));
        }
        ASSERT_EQ(states.size(), std::size(rows) + 1);
        for (int round = 0; round < 2; ++round) {
            for (size_t i = std::size(rows); i-- > 0;) {
                SCOPED_TRACE(testing::Message() << "undo " << rows[i].name << i);
                Command(IDM_UNDO);
                EXPECT_TRUE(StateOf(document) == states[i]);
                EXPECT_EQ(Selection(), rows[i].undone);
                EXPECT_TRUE(IsInSight(Selection()));
                EXPECT_EQ(Lines().size(), document.count);
            }
            for (size_t i = 0; i < std::size(rows); ++i) {
                SCOPED_TRACE(testing::Message() << "redo " << rows[i].name << i);
                Command(IDM_REDO);
                EXPECT_TRUE(StateOf(document) == states[i + 1]);
                EXPECT_EQ(Selection(), rows[i].redone);
                EXPECT_TRUE(IsInSight(Selection()));
                EXPECT_EQ(Lines().size(), document.count);
            }
        }
    }
}

TEST_F(EditorHistoryTest, WhatCancelLeavesChangedIsAStep) {
    FillBlockListView(hMainWindow, &document);
    EditLine(kSampleHeader, {Press(IDCANCEL, {{IDC_HEADER_GLOBAL_PALETTE}}), Press(IDYES)});
    EXPECT_EQ(Names(), "Edit header|-");
    EditLine(kSamplePlainText, {Press(IDCANCEL, {{IDC_COLOUR}}), ChooseCell(1, 2)});
    EXPECT_EQ(Names(), "Edit plain text|-");
    for (int line : {kSampleImage, kSampleControl, kSampleComment, kSampleLoop}) EditLine(line, {Press(IDCANCEL)});
    EXPECT_EQ(Names(), "Edit plain text|-");
    settings.carefulMode = 1;
    EditLine(kSampleHeader, {Press(IDCANCEL, {{IDC_HEADER_SORTED}})});
    EditLine(kSamplePlainText, {Press(IDCANCEL, {{IDC_COLOUR}}), ChooseCell(2, 2)});
    for (int line : {kSampleImage, kSampleComment, kSampleLoop}) EditLine(line, {Press(IDOK)});
    EXPECT_EQ(Names(), "Edit plain text|-") << "nothing was changed";
    Command(IDM_UNDO);
    Command(IDM_UNDO);
    EXPECT_EQ(Names(), "-|Edit header");
}

TEST_F(EditorHistoryTest, AFileReadWholeIsTheSameFileAgain) {
    settings.carefulMode = 1;
    GifBytes bytes;
    bytes.Header("GIF87a", 40, 30, 0x80).SmallImage().Add({0, 0}).SmallImage(0x80).Add({0x3B}).Text("and more");
    WriteAll(File("a.gif"), bytes);
    OpenAfresh(File("a.gif"));
    EditLine(1, {Press(IDOK, {{IDC_IMAGE_TOP, "3"}})});
    EditLine(2, {Press(IDOK, {{IDC_IMAGE_INTERLACED}})});
    InsertComment(0);
    EXPECT_EQ(Lines()[0].substr(0, 14), "HEADER\xFE GIF89a") << "signed for the comment";
    Select(3);
    Command(IDM_DELETE);
    Run(IDM_SAVE_AS, {ChooseFiles({File("changed.gif")})});
    for (int i = 0; i < 4; ++i) Command(IDM_UNDO);
    Run(IDM_SAVE_AS, {ChooseFiles({File("same.gif")})});
    EXPECT_TRUE(ReadAll(File("same.gif")) == bytes);
    for (int i = 0; i < 4; ++i) Command(IDM_REDO);
    Run(IDM_SAVE_AS, {ChooseFiles({File("again.gif")})});
    EXPECT_TRUE(ReadAll(File("again.gif")) == ReadAll(File("changed.gif")));
    EXPECT_FALSE(ReadAll(File("again.gif")) == bytes);
}

TEST_F(EditorHistoryTest, TheMenuNamesTheStepsAndGreysWhatThereIsNot) {
    const std::string nothing = "[&Undo\tCtrl+Z][&Redo\tCtrl+Y]";
    wchar_t text[100] = L"";
    GetMenuStringW(GetMenu(hMainWindow), 1, text, 100, MF_BYPOSITION);
    EXPECT_STREQ(text, L"&Edit");
    EXPECT_EQ(Menu(), nothing);
    for (int command : {IDM_UNDO, IDM_REDO, 0}) Run(command, {});
    EXPECT_EQ(settings.undoMemory, 256u) << "an option without an item is no switch";
    OpenAfresh(MakeGif("a.gif"));
    EXPECT_EQ(Menu(), nothing);
    Select(1);
    Command(IDM_DELETE);
    EXPECT_EQ(Menu(), "&Undo Delete comment\tCtrl+Z[&Redo\tCtrl+Y]");
    InsertComment(1);
    Command(IDM_UNDO);
    EXPECT_EQ(Menu(), "&Undo Delete comment\tCtrl+Z&Redo Insert comment\tCtrl+Y");
    Command(IDM_UNDO);
    EXPECT_EQ(Menu(), "[&Undo\tCtrl+Z]&Redo Delete comment\tCtrl+Y");
    InsertComment(0);
    EXPECT_EQ(Menu(), "&Undo Insert comment\tCtrl+Z[&Redo\tCtrl+Y]") << "no way forth any more";
    // Each of these puts another document into the window, or none.
    for (int command : {IDM_CLOSE, IDM_NEW, IDM_RECENT_FIRST, IDM_WIZARD}) {
        OpenAfresh(File("a.gif"));
        InsertComment(0);
        documentChanged = false;
        Run(command, {}, std::vector<Steps>(command == IDM_WIZARD ? 1 : 0, Press(IDCANCEL)));
        EXPECT_EQ(Menu(), nothing) << command;
    }
}

TEST_F(EditorHistoryTest, KeysGoBackAndForthWhereverTheFocusIs) {
    const HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    GifBytes bytes;  // the strip, which listens for Escape, is there with it
    WriteAll(File("cut.gif"), bytes.Header("GIF89a", 2, 2, 0x80).SmallImage().Comment("a").Comment("b"));
    OpenAfresh(File("cut.gif"));
    ASSERT_NE(GetDlgItem(hMainWindow, IDC_NOTICE), nullptr);
    for (HWND focus : {list, hMainWindow, list}) {
        Select(2);
        Command(IDM_DELETE);
        for (const auto& [key, modifiers, blocks] : {std::tuple<WPARAM, Ids, uint32_t>('Z', {}, 3),
                                                     {'Z', {VK_CONTROL, VK_SHIFT}, 3},
                                                     {'Z', {VK_CONTROL, VK_MENU}, 3},
                                                     {'Q', {VK_CONTROL}, 3},
                                                     {'Z', {VK_CONTROL}, 4},
                                                     {'Z', {VK_CONTROL}, 4},
                                                     {'Y', {VK_CONTROL}, 3},
                                                     {'Y', {VK_CONTROL}, 3},
                                                     {'Z', {VK_CONTROL}, 4}}) {
            SetFocus(focus);
            PressKey(key, modifiers);
            EXPECT_EQ(document.count, blocks) << key;
        }
        PressKey(VK_ESCAPE, {});
        EXPECT_EQ(GetDlgItem(hMainWindow, IDC_NOTICE), nullptr);
        SetFocus(list);
        PressKey(VK_HOME, {});
        EXPECT_EQ(Selection(), 0) << "the list answers its own keys";
    }
}

TEST_F(EditorHistoryTest, TheCarefulDocumentIsUnchangedAgainWhereItWasSaved) {
    for (bool careful : {false, true}) {
        settings.carefulMode = careful;
        const std::string path = MakeGif("a.gif");
        OpenAfresh(path);
        InsertComment(0);
        Command(IDM_UNDO);
        EXPECT_EQ(documentChanged, !careful);
        Command(IDM_REDO);
        EXPECT_TRUE(documentChanged);
        Command(IDM_SAVE);
        const int back = careful ? 1 : 2;  // the screen is fitted, too
        EXPECT_FALSE(documentChanged);
        for (int i = 0; i < back; ++i) {
            Command(IDM_UNDO);
            EXPECT_TRUE(documentChanged) << "the file has it";
        }
        for (int i = 0; i < back; ++i) Command(IDM_REDO);
        EXPECT_EQ(documentChanged, !careful);
        Run(IDM_CLOSE, {}, std::vector<Steps>(careful ? 0 : 1, Read(kSaveQuestion, IDNO)));
        EXPECT_EQ(document.count, 0u);
    }
    // A save that fails leaves the document as changed as it was.
    OpenAfresh(MakeGif("b.gif"));
    InsertComment(0);
    faults.writesUntilFailure = 0;
    Run(IDM_SAVE, {[](HWND dialog) { faults = {}, PressButton(dialog, IDOK); }});
    EXPECT_TRUE(documentChanged);
    Command(IDM_UNDO);
    EXPECT_FALSE(documentChanged);
}

TEST_F(EditorHistoryTest, WhatTheWizardMadeIsNotSavedByGoingBack) {
    settings.carefulMode = 1;
    const std::string path = MakeGif("a.gif");
    auto walk = [&](HWND dialog) {
        for (int i = 0; i < 2; ++i)
            SendDlgItemMessageW(dialog, IDC_WIZARD_FILES, LB_ADDSTRING, 0,
                                reinterpret_cast<LPARAM>(WideFromUtf8(path).c_str()));
        for (int page = 0; page < 7; ++page) PressButton(dialog, IDC_WIZARD_NEXT);
    };
    Run(IDM_WIZARD, {walk});
    ASSERT_EQ(document.count, 6u);
    EXPECT_EQ(Names(), "-|-");
    InsertComment(0);
    Command(IDM_UNDO);
    EXPECT_TRUE(documentChanged);
    Run(IDM_SAVE, {ChooseFiles({File("made.gif")})});
    InsertComment(0);
    Command(IDM_UNDO);
    EXPECT_FALSE(documentChanged);
}

TEST_F(EditorHistoryTest, MemoryIsBoundedAndTheOldestStepsGo) {
    // MiB, and the steps that remain of five, each with an image of 480000 pixels.
    for (const auto& [megabytes, steps] : {std::pair(256u, 5), {UINT32_MAX, 5}, {2u, 4}, {1u, 2}, {0u, 1}}) {
        settings.undoMemory = megabytes;
        OpenAfresh(MakeGif("a.gif"));
        const std::string large = MakeGif("large.gif", 800, 600);
        Select(0);
        for (int i = 0; i < 5; ++i) Run(IDM_INSERT, {Press(IDC_INSERT_IMAGE), ChooseFiles({large})});
        EXPECT_TRUE(megabytes == 0 || DocumentHistory().Bytes() <= uint64_t{megabytes} << 20);
        int undone = 0;
        while (UndoName() && undone < 9) Command(IDM_UNDO), ++undone;
        EXPECT_EQ(undone, steps) << megabytes;
        EXPECT_EQ(document.count, 9u - static_cast<uint32_t>(steps));
        documentChanged = false;
    }
}

TEST_F(EditorHistoryTest, WithoutMemoryNothingIsHalfUndone) {
    OpenAfresh(MakeGif("a.gif"));
    InsertComment(0);
    const std::string state = StateOf(document);
    faults.allocationsUntilFailure = 0;
    Run(IDM_UNDO, {[](HWND dialog) {
            faults = {};
            EXPECT_EQ(ControlText(dialog, 101), "There has been an error allocating memory.");
            PressButton(dialog, IDOK);
        }});
    EXPECT_TRUE(StateOf(document) == state);
    EXPECT_EQ(Names(), "Insert comment|-");
    // Of a change that could not be watched nobody knows the way back.
    faults.allocationsUntilFailure = 0;
    faults.onlyOne = true;
    Select(1);
    SendMessageW(hMainWindow, WM_COMMAND, IDM_DELETE, 0);
    faults = {};
    EXPECT_EQ(document.count, 4u);
    EXPECT_EQ(Names(), "-|-");
}

}  // namespace
