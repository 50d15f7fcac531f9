// The Edit menu's commands on blocks and frames, their keys, and the menu of a line.
#include "editing/timing.h"
#include "tests/gui/editor_test.h"
#include "windows/app/document_face.h"
#include "windows/app/document_history.h"
#include "windows/ids/timing_ids.h"

namespace {

class EditMenuTest : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        Show();
    }
    static void Show() { FillBlockListView(hMainWindow, &document); }

    static HMENU EditMenu() {
        HMENU menu = GetSubMenu(GetMenu(hMainWindow), 1);
        SendMessageW(hMainWindow, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(menu), MAKELPARAM(1, FALSE));
        return menu;
    }
    // The items of a menu, a line each; in brackets what is greyed, "-" a separator.
    static std::string Items(HMENU menu) {
        std::string all;
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            wchar_t text[100] = L"";
            GetMenuStringW(menu, static_cast<UINT>(i), text, 100, MF_BYPOSITION);
            const UINT state = GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION);
            const std::string item = state & MF_SEPARATOR ? "-" : Ansi1252FromWide(text);
            all += (state & MF_GRAYED && item != "-" ? "[" + item + "]" : item) + "\n";
        }
        return all;
    }
    // One digit a block: its kind.
    static std::string Kinds() { return KindsOf(document); }
};

TEST_F(EditMenuTest, WhatCantBeDoneIsGreyed) {
    const std::string items = Items(EditMenu());
    EXPECT_TRUE(items.starts_with("[&Undo\tCtrl+Z]\n[&Redo\tCtrl+Y]\n-\n")) << items;
    for (const char* text : {"Dup&licate\tCtrl+D", "Mo&ve up\tAlt+Up", "Move dow&n\tAlt+Down", "&Edit block...\tEnter",
                             "Rever&se", "T&iming..."})
        EXPECT_NE(items.find(text), std::string::npos) << text;
    struct Row {
        int line;
        const char* enabled;  // D duplicate, U up, N down, E edit
    };
    for (const auto& [line, enabled] : {Row{kNoLine, ""},
                                        {kSampleHeader, "E"},
                                        {kSampleImage, "DNE"},
                                        {kSampleControl, "DUNE"},
                                        {kSampleLoop, "UNE"},
                                        {kSampleLastControl, "DUE"}}) {
        SelectLine(hMainWindow, line);
        EditMenu();
        std::string can;
        for (const auto& [id, letter] :
             {std::pair(IDM_DUPLICATE, 'D'), {IDM_MOVE_UP, 'U'}, {IDM_MOVE_DOWN, 'N'}, {IDM_EDIT, 'E'}})
            if (IsEnabled(id)) can += letter;
        EXPECT_EQ(can, enabled) << line;
        const std::string kinds = Kinds();
        for (const auto& [id, letter] : {std::pair(IDM_DUPLICATE, 'D'), {IDM_MOVE_UP, 'U'}, {IDM_MOVE_DOWN, 'N'}}) {
            if (can.find(letter) != std::string::npos) continue;
            Command(id);  // as a key or a script would
            EXPECT_EQ(Kinds(), kinds) << id;
        }
    }
    EXPECT_TRUE(IsEnabled(IDM_REVERSE));
    EXPECT_TRUE(IsEnabled(IDM_TIMING));
    documentChanged = false;
    Open(MakeGif("one.gif"));
    EditMenu();
    EXPECT_FALSE(IsEnabled(IDM_REVERSE)) << "one frame";
    EXPECT_TRUE(IsEnabled(IDM_TIMING));
    Command(IDM_CLOSE);
    SelectLine(hMainWindow, 2);
    EditMenu();
    for (int id : {IDM_DUPLICATE, IDM_MOVE_UP, IDM_EDIT, IDM_REVERSE, IDM_TIMING})
        EXPECT_FALSE(IsEnabled(id)) << "the lines are of a closed document: " << id;
}

TEST_F(EditMenuTest, BlocksMoveAndAreDoubledWithTheSelectionOnThem) {
    struct Row {
        int command, line;
        const char* kinds;
        int selection;
    };
    ASSERT_EQ(Kinds(), "123467259083");
    for (const auto& [command, line, kinds, selection] : {Row{IDM_MOVE_DOWN, 1, "132467259083", 2},
                                                          {IDM_MOVE_DOWN, 2, "134267259083", 3},
                                                          {IDM_MOVE_UP, 3, "132467259083", 2},
                                                          {IDM_MOVE_UP, 11, "132467259038", 10},
                                                          {IDM_DUPLICATE, 4, "1324667259038", 5},
                                                          {IDM_DUPLICATE, 12, "13246672590388", 13}}) {
        Select(line);
        Command(command);
        EXPECT_EQ(Kinds(), kinds) << command << " " << line;
        EXPECT_EQ(Selection(), selection);
        EXPECT_EQ(Lines().size(), document.count);
    }
    EXPECT_TRUE(documentChanged);
}

TEST_F(EditMenuTest, ReverseExchangesTheFrames) {
    DestroyBlockList(&document);
    ASSERT_TRUE(NewDocument(&document));
    Block header = At(0);
    HeaderFields fields = GetHeaderFields(header);
    fields.screenWidth = fields.screenHeight = 2;
    PutHeaderFields(&header, fields);
    Put(header);
    for (uint32_t value : {1u, 2u, 3u}) {
        Append(&document, *MakeImageBlock(&document, MakeImage(2, 2, 8, nullptr, [=](int, int) { return value; })));
        Append(&document, *MakeBlock(&document, kCommentBlock));
    }
    RenumberBlocks(&document);
    Show();
    Select(4);
    Command(IDM_REVERSE);
    EXPECT_EQ(PixelsOf(At(1)) + "|" + PixelsOf(At(3)) + "|" + PixelsOf(At(5)), "33 33|22 22|11 11");
    EXPECT_EQ(Selection(), 4);
    EXPECT_EQ(*UndoName(), "Reverse frames");
}

TEST_F(EditMenuTest, TimingChangesTheFramesThatAreMeant) {
    DestroyBlockList(&document);
    ASSERT_TRUE(NewDocument(&document));
    for (int delay : {10, 30}) {
        Block control = *MakeBlock(&document, kControlBlock), image = MakeImage(2, 2, 8);
        ControlFields fields = GetControlFields(control);
        fields.delay = static_cast<uint16_t>(delay);
        PutControlFields(&control, fields);
        Append(&document, control);
        Append(&document, image);
    }
    RenumberBlocks(&document);
    Show();
    const Ids controls = {IDC_TIMING_DELAY, IDC_TIMING_SCALE, IDC_TIMING_TOTAL,    IDC_TIMING_LEAST,
                          IDC_TIMING_VALUE, IDC_TIMING_UNIT,  IDC_TIMING_SELECTED, IDC_TIMING_ALL};
    struct Row {
        int line;
        Changes changes;
        std::vector<uint32_t> delays;
    };
    const Row rows[] = {
        {1, {{IDC_TIMING_VALUE, "7"}}, {7, 7}},
        {4, {{IDC_TIMING_SELECTED}, {IDC_TIMING_VALUE, "5"}}, {10, 5}},
        {1, {{IDC_TIMING_SCALE}, {IDC_TIMING_VALUE, "200"}}, {20, 60}},
        {1, {{IDC_TIMING_TOTAL}, {IDC_TIMING_VALUE, "400"}}, {100, 300}},
        {0, {{IDC_TIMING_LEAST}, {IDC_TIMING_VALUE, "20"}}, {20, 30}},
        {0, {{IDC_TIMING_TOTAL}}, {10, 30}},      // which is what they have
        {0, {{IDC_TIMING_VALUE, ""}}, {10, 30}},  // no number
    };
    for (const Row& row : rows) {
        Select(row.line);
        Run(IDM_TIMING, {Press(IDOK, row.changes)});
        EXPECT_EQ(DelaysOf(document), row.delays);
        EXPECT_EQ(Selection(), row.line);
        if (UndoName()) {
            EXPECT_EQ(*UndoName(), "Change timing");
        }
        Command(IDM_UNDO);
        EXPECT_EQ(DelaysOf(document), (std::vector<uint32_t>{10, 30}));
    }
    Select(3);
    Run(IDM_TIMING,
        {Work(controls, "on|off|off|off|10|1/100ths of a second|off|on", {{IDC_TIMING_SELECTED}, {IDC_TIMING_SCALE}},
              "off|on|off|off|100|per cent|on|off", IDCANCEL)});
    Select(0);
    Run(IDM_TIMING, {See(controls, "on|off|off|off|10|1/100ths of a second|[off]|on", IDCANCEL)});
    // What can't be done, or comes out otherwise, is said.
    Run(IDM_TIMING, {Press(IDOK, {{IDC_TIMING_VALUE, "70000"}})},
        {Read("Frame 0 would have a delay of 70000 hundredths of a second; 65535 is the most.", IDOK)});
    EXPECT_EQ(DelaysOf(document), (std::vector<uint32_t>{10, 30}));
    Run(IDM_TIMING, {Press(IDOK, {{IDC_TIMING_VALUE, "1"}})},
        {Read("Of 2 frames the delay is now below 2, for which players take 10.", IDOK)});
    EXPECT_EQ(DelaysOf(document), (std::vector<uint32_t>{1, 1}));
}

TEST_F(EditMenuTest, KeysReachTheirCommandsWhereverTheFocusIs) {
    struct Row {
        WPARAM key;
        Ids modifiers;
        const char* kinds;  // afterwards, when line 4 of 123467259083 was selected
    };
    const Row rows[] = {
        {'D', {VK_CONTROL}, "1234667259083"},
        {VK_UP, {VK_MENU}, "123647259083"},
        {VK_DOWN, {VK_MENU}, "123476259083"},
        {VK_DELETE, {}, "12347259083"},
        {VK_DELETE, {VK_SHIFT}, "123467259083"},
        {VK_DELETE, {VK_CONTROL}, "123467259083"},
        {'D', {}, "123467259083"},
        {'D', {VK_CONTROL, VK_SHIFT}, "123467259083"},
        {VK_UP, {VK_MENU, VK_CONTROL}, "123467259083"},
    };
    const HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    for (HWND focus : {list, hMainWindow}) {
        for (const Row& row : rows) {
            Select(4);
            SetFocus(focus);
            PressKey(row.key, row.modifiers);
            EXPECT_EQ(Kinds(), row.kinds) << row.key;
            if (UndoName()) Command(IDM_UNDO);
            ASSERT_EQ(Kinds(), "123467259083");
        }
    }
    // Dialogs that open by a key, and are cancelled.
    EnableDocumentCommands(hMainWindow, true);
    SelectLine(hMainWindow, kSampleComment);
    SetFocus(list);
    std::vector<std::string> titles;
    const Steps note = [&](HWND dialog) {
        wchar_t title[100] = L"";
        GetWindowTextW(dialog, title, 100);
        titles.push_back(Ansi1252FromWide(title));
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    };
    documentChanged = false;
    for (const auto& [key, modifiers] :
         {std::pair<WPARAM, Ids>(VK_RETURN, {}), {'O', {VK_CONTROL}}, {'S', {VK_CONTROL, VK_SHIFT}}}) {
        DialogAnswers answers({note});
        PressKey(key, modifiers);
    }
    EXPECT_EQ(titles, (std::vector<std::string>{"Edit Comment", "Open", "Save As"}));
    PressKey('N', {VK_CONTROL});
    EXPECT_EQ(Kinds(), "1");
    currentFileName = File("saved.gif");
    documentIsNamed = true;
    PressKey('S', {VK_CONTROL});
    EXPECT_NE(GetFileAttributesW(WideFromUtf8(File("saved.gif")).c_str()), INVALID_FILE_ATTRIBUTES);
    // What the File menu has greyed no key can do.
    Command(IDM_CLOSE);
    for (const auto& [key, modifiers] : {std::pair<WPARAM, Ids>(VK_F5, {}), {'S', {VK_CONTROL}}, {VK_RETURN, {}}}) {
        DialogAnswers none;
        PressKey(key, modifiers);
    }
}

// Waits for the menu that is shown, notes its items and ends it.
class MenuReader {
public:
    MenuReader() : timer_(SetTimer(nullptr, 0, 20, Look)) { items.clear(); }
    ~MenuReader() { KillTimer(nullptr, timer_); }
    MenuReader(const MenuReader&) = delete;
    MenuReader& operator=(const MenuReader&) = delete;
    static inline std::string items;  // what is greyed with "!" before it

private:
    static BOOL CALLBACK Find(HWND window, LPARAM found) {
        wchar_t name[20] = L"";
        GetClassNameW(window, name, 20);
        if (wcscmp(name, L"#32768") != 0) return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    }
    static void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
        constexpr UINT kGetMenu = 0x1E1;
        HWND window = nullptr;
        EnumThreadWindows(GetCurrentThreadId(), Find, reinterpret_cast<LPARAM>(&window));
        auto* menu = window ? reinterpret_cast<HMENU>(SendMessageW(window, kGetMenu, 0, 0)) : nullptr;
        for (int i = 0; menu && i < GetMenuItemCount(menu); ++i) {
            wchar_t text[100] = L"";
            GetMenuStringW(menu, static_cast<UINT>(i), text, 100, MF_BYPOSITION);
            const UINT state = GetMenuState(menu, static_cast<UINT>(i), MF_BYPOSITION);
            const std::string item = Ansi1252FromWide(text);
            if (!(state & MF_SEPARATOR))
                items += (state & MF_GRAYED ? "!" : "") + item.substr(0, item.find('\t')) + "|";
        }
        EndMenu();
    }
    UINT_PTR timer_;
};

TEST_F(EditMenuTest, ALineHasAMenu) {
    const HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    RECT item = {};
    SendMessageW(list, LB_GETITEMRECT, 3, reinterpret_cast<LPARAM>(&item));
    POINT point = {item.left + 20, item.top + 2};
    ClientToScreen(list, &point);
    const LPARAM place = MAKELPARAM(point.x, point.y);
    SelectLine(hMainWindow, 0);
    {
        MenuReader reader;
        SendMessageW(hMainWindow, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), place);
        PumpMessages();
    }
    const std::string items = MenuReader::items;
    for (const char* text : {"Dup&licate|", "Mo&ve up|", "Move dow&n|", "&Edit block...|", "&Delete|"})
        EXPECT_NE(items.find(text), std::string::npos) << items;
    EXPECT_EQ(Selection(), 3);
    SelectLine(hMainWindow, 0);
    {
        MenuReader reader;  // by the key, for the line that is selected
        SendMessageW(hMainWindow, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), -1);
        PumpMessages();
    }
    EXPECT_NE(MenuReader::items.find("!Mo&ve up|"), std::string::npos) << MenuReader::items;
    EXPECT_EQ(Selection(), 0);
    // Behind the last line there is none.
    RECT area = {};
    GetWindowRect(list, &area);
    SendMessageW(hMainWindow, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list),
                 MAKELPARAM(area.left + 9, area.bottom - 9));
    EXPECT_EQ(Selection(), 0);
}

}  // namespace
