// The dialog that shows how far work on the whole document is; Export frames and Check.
#include <atomic>

#include "gif/source_bytes.h"
#include "tests/gui/animation.h"
#include "tests/gui/composed.h"
#include "tests/gui/editor_test.h"
#include "tests/gui/stopped_work.h"
#include "tests/support/gif_bytes.h"
#include "tests/support/png_reading.h"
#include "windows/ids/tool_ids.h"
#include "windows/services/file_batch.h"
#include "windows/services/progress_dialog.h"

namespace {

class ToolsTest : public EditorTest {
protected:
    // The document becomes one that was opened from "kite.gif" in the test's folder.
    void Show(const BlockList* list) {
        ASSERT_TRUE(CopyBlockList(*list, &document));
        RenumberBlocks(&document);
        FillBlockListView(hMainWindow, &document);
        SelectLine(hMainWindow, 0);
        currentFileName = File("kite.gif");
        documentIsNamed = true;
        documentChanged = false;
        StartHistory(true);
        PumpMessages();
    }
    // Three frames on 40 x 30, with transparency, disposal, and an image that reaches beyond the screen.
    static MadeAnimation ThreeFrames() {
        MadeAnimation made(40, 30);
        made.Control(2, 10, 3).Image({4, 5, 20, 10}).Comment().Control(1, 20).Image({10, 8, 16, 16, 8, false, true, 2});
        made.Control(3, 25, 0).Image({30, 20, 20, 20, 8, false, false, 3});
        return made;
    }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        WIN32_FIND_DATAW found = {};
        HANDLE search = FindFirstFileW(WideFromUtf8(File("*")).c_str(), &found);
        do
            if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) names.push_back(Utf8FromWide(found.cFileName));
        while (FindNextFileW(search, &found));
        FindClose(search);
        std::ranges::sort(names);
        return names;
    }
    using Strings = std::vector<std::string>;

    // What differs between a picture and the composed frame, from that row and column of the picture on.
    static size_t WrongPixels(const ReadPng& png, uint32_t frame, int left, int top) {
        const ComposedFrame composed = Compose(document, frame);
        size_t wrong = 0;
        for (int y = 0; y < composed.height; ++y)
            for (int x = 0; x < composed.width; ++x) {
                const auto at = static_cast<size_t>(y * composed.width + x);
                const uint32_t pixel = png.pixels.at(static_cast<size_t>(top + y) * png.width + size_t(left + x));
                uint8_t bytes[4];
                memcpy(bytes, &pixel, sizeof bytes);
                const uint32_t colour = uint32_t{bytes[0]} << 16 | uint32_t{bytes[1]} << 8 | bytes[2];
                wrong += composed.isOpaque[at] ? bytes[3] != 255 || colour != composed.pixels[at] : pixel != 0;
            }
        return wrong;
    }
    Steps ChooseName(const std::string& name) const { return DialogAnswers::ChooseFiles({File(name)}); }
};

// What is done every 10 ms while a dialog is open.
std::function<void()> lookAtDialog;

void CALLBACK Look(HWND, UINT, UINT_PTR, DWORD) {
    lookAtDialog();
}

TEST_F(ToolsTest, LongWorkEndsByItselfOrIsStopped) {
    // No dialog for what is done in a moment; what throws has no memory.
    EXPECT_EQ(
        RunWithProgress(hMainWindow, L"Work", L"Working", [](const WorkWatch& watch, const auto&) { watch(1, 1); }),
        WorkEnd::kDone);
    EXPECT_EQ(RunWithProgress(hMainWindow, L"Work", L"Working",
                              [](const WorkWatch&, const auto&) { throw std::bad_alloc(); }),
              WorkEnd::kNoMemory);

    // It goes on behind the dialog, which shows how far it is, until the dialog has been looked at.
    std::atomic<bool> isSeen = false;
    bool ownerWasEnabled = true;
    std::string line;
    lookAtDialog = [&] {
        HWND dialog = FindWindowW(nullptr, L"Work of a test");
        if (!dialog || SendDlgItemMessageW(dialog, IDC_WORK_BAR, PBM_GETPOS, 0, 0) != 250) return;
        line = ControlText(dialog, IDC_WORK_LINE);
        ownerWasEnabled = IsWindowEnabled(hMainWindow);
        isSeen = true;
    };
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, Look);
    const auto wait = [&](const WorkWatch& watch, const auto&) {
        while (!isSeen && watch(1, 4)) Sleep(1);
    };
    const WorkEnd end = RunWithProgress(hMainWindow, L"Work of a test", L"Working", wait);
    KillTimer(nullptr, timer);
    EXPECT_EQ(end, WorkEnd::kDone);
    EXPECT_EQ(line, "Working: 25 %");
    EXPECT_FALSE(ownerWasEnabled);
    EXPECT_TRUE(IsWindowEnabled(hMainWindow));
}

TEST_F(ToolsTest, EscapeStopsLongWork) {
    const StoppedWork stopped;
    for (int button : {IDCANCEL, 0}) {
        bool toldToStop = false;
        DialogAnswers answers({[=](HWND dialog) {
            EXPECT_EQ(GetDlgCtrlID(GetFocus()), IDCANCEL) << "the keys stop it";
            if (button) return PressButton(dialog, button);
            PostMessageW(GetFocus(), WM_KEYDOWN, VK_ESCAPE, 0);
        }});
        EXPECT_EQ(RunWithProgress(hMainWindow, L"Work", L"Working",
                                  [&](const WorkWatch& watch, const auto&) { toldToStop = !watch(1, 4); }),
                  WorkEnd::kStopped);
        EXPECT_TRUE(toldToStop);
    }
}

TEST_F(ToolsTest, FramesAreExportedAsNumberedFiles) {
    Show(ThreeFrames().List());
    const Ids controls = {IDC_EXPORT_ALL,   IDC_EXPORT_SOME,  IDC_EXPORT_FIRST,    IDC_EXPORT_LAST,
                          IDC_EXPORT_FILES, IDC_EXPORT_SHEET, IDC_EXPORT_ANIMATION};
    Run(IDM_EXPORT_FRAMES, {See(controls, "on|off|[1]|[3]|on|off|off", IDOK), [&](HWND dialog) {
                                EXPECT_EQ(ControlText(dialog, FileNameField(dialog)), "kite.png");
                                ChooseName("kite.png")(dialog);
                            }});
    EXPECT_EQ(Names(), Strings({"kite-001.png", "kite-002.png", "kite-003.png"}));
    for (uint32_t frame : {0u, 1u, 2u}) {
        const ReadPng png(ReadAll(File("kite-00" + std::to_string(frame + 1) + ".png")));
        ASSERT_EQ(std::pair(png.width, png.height), std::pair(40u, 30u));
        EXPECT_EQ(WrongPixels(png, frame, 0, 0), 0u) << frame;
    }
    EXPECT_FALSE(documentChanged);

    // A range that is none is said, and may be corrected.
    WriteAll(File("kite-002.png"), "old");
    const Changes range = {{IDC_EXPORT_SOME}, {IDC_EXPORT_FIRST, "3"}, {IDC_EXPORT_LAST, "2"}};
    const Steps correct = [&](HWND dialog) {
        Press(IDOK, range)(dialog);
        SetDlgItemTextW(dialog, IDC_EXPORT_FIRST, L"2");
        PressButton(dialog, IDOK);
    };
    const Steps wrong = Read("Give two numbers from 1 to 3, the smaller one first.", IDOK);
    Run(IDM_EXPORT_FRAMES, {correct, wrong, ChooseName("kite"), Read("kite-002.png is there already. Replace?", IDNO)});
    EXPECT_EQ(ReadAll(File("kite-002.png")).size(), 3u) << "No leaves it";
    Run(IDM_EXPORT_FRAMES,
        {correct, wrong, ChooseName("kite"), Read("kite-002.png is there already. Replace?", IDYES)});
    EXPECT_EQ(WrongPixels(ReadPng(ReadAll(File("kite-002.png"))), 1, 0, 0), 0u);
    EXPECT_EQ(Names().size(), 3u);
}

TEST_F(ToolsTest, FramesAreExportedAsOneFile) {
    Show(ThreeFrames().List());
    Run(IDM_EXPORT_FRAMES, {Press(IDOK, {{IDC_EXPORT_SHEET}}), ChooseName("sheet.png")});
    const ReadPng sheet(ReadAll(File("sheet.png")));
    ASSERT_EQ(std::pair(sheet.width, sheet.height), std::pair(80u, 60u));
    EXPECT_EQ(WrongPixels(sheet, 0, 0, 0), 0u);
    EXPECT_EQ(WrongPixels(sheet, 1, 40, 0), 0u);
    EXPECT_EQ(WrongPixels(sheet, 2, 0, 30), 0u);

    Run(IDM_EXPORT_FRAMES, {Press(IDOK, {{IDC_EXPORT_ANIMATION}}), ChooseName("moves.png")});
    std::string chunks;
    for (const PngChunk& chunk : ChunksOf(ReadAll(File("moves.png")))) chunks += chunk.type + " ";
    EXPECT_NE(chunks.find("acTL "), std::string::npos) << chunks;
    EXPECT_EQ(std::ranges::count(ChunksOf(ReadAll(File("moves.png"))), std::string("fcTL"), &PngChunk::type), 3);
}

TEST_F(ToolsTest, AnExportThatIsStoppedOrFailsLeavesAllAsItWas) {
    Show(ThreeFrames().List());
    WriteAll(File("kite-001.png"), "old");
    const Steps replace = Press(IDYES);
    for (int form : {IDC_EXPORT_FILES, IDC_EXPORT_SHEET, IDC_EXPORT_ANIMATION}) {
        const StoppedWork stopped;
        std::vector<Steps> dialogs = {Press(IDOK, {{form}}), ChooseName("kite.png")};
        if (form == IDC_EXPORT_FILES) dialogs.push_back(replace);
        dialogs.push_back(Press(IDCANCEL));
        Run(IDM_EXPORT_FRAMES, dialogs);
        EXPECT_EQ(Names(), Strings({"kite-001.png"})) << form;
    }
    for (int form : {IDC_EXPORT_FILES, IDC_EXPORT_SHEET, IDC_EXPORT_ANIMATION}) {
        std::string said;
        const bool asks = form == IDC_EXPORT_FILES;
        const Steps choose = [&](HWND dialog) {
            if (!asks) faults.writesUntilFailure = 0;
            ChooseName("kite.png")(dialog);
        };
        const Steps replaceInVain = [](HWND dialog) {
            faults.writesUntilFailure = 0;
            PressButton(dialog, IDYES);
        };
        const Steps read = [&](HWND dialog) {
            faults = {};
            said = ControlText(dialog, 101);
            PressButton(dialog, IDOK);
        };
        std::vector<Steps> dialogs = {Press(IDOK, {{form}}), choose};
        if (asks) dialogs.push_back(replaceInVain);
        dialogs.push_back(read);
        Run(IDM_EXPORT_FRAMES, dialogs);
        EXPECT_TRUE(said.starts_with(asks ? "kite-001.png\n" : "kite.png\n")) << said;
        EXPECT_EQ(Names(), Strings({"kite-001.png"})) << form;
    }
    EXPECT_EQ(ReadAll(File("kite-001.png")).size(), 3u);

    // What can't be written lets none of the others stay.
    FileBatch batch;
    const uint8_t content[] = {1, 2};
    for (const char* name : {"kite-001.png", "kite-002.png"}) EXPECT_TRUE(batch.Add(File(name), content)) << name;
    EXPECT_FALSE(batch.Add(File("nowhere\\kite.png"), content));
    EXPECT_EQ(batch.FailedPath(), File("nowhere\\kite.png"));
    EXPECT_FALSE(batch.Reason().empty());
}

TEST_F(ToolsTest, ABatchOfFilesThatCantBePutIsTakenBack) {
    WriteAll(File("a"), "old");
    const uint8_t content[] = {1, 2};
    {
        FileBatch batch;
        for (const char* name : {"a", "b", "c"}) ASSERT_TRUE(batch.Add(File(name), content)) << name;
        HANDLE held = CreateFileW(WideFromUtf8(File("c.new0")).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
        EXPECT_FALSE(batch.Commit()) << "somebody reads what waits";
        EXPECT_EQ(batch.FailedPath(), File("c"));
        CloseHandle(held);
    }
    EXPECT_EQ(Names(), Strings({"a"}));
    EXPECT_EQ(ReadAll(File("a")).size(), 3u);
    {
        FileBatch batch;
        for (const char* name : {"a", "b"}) ASSERT_TRUE(batch.Add(File(name), content)) << name;
        EXPECT_TRUE(batch.Commit());
    }
    EXPECT_EQ(Names(), Strings({"a", "b"}));
    EXPECT_EQ(ReadAll(File("a")).size(), 2u);
}

TEST_F(ToolsTest, AnExportReplacesNeitherReadOnlyFilesNorFolders) {
    Show(ThreeFrames().List());
    const std::wstring second = WideFromUtf8(File("kite-002.png"));
    const auto refused = [&](const char* what) {
        SCOPED_TRACE(what);
        std::string said;
        const Steps read = [&](HWND dialog) {
            said = ControlText(dialog, 101);
            PressButton(dialog, IDOK);
        };
        Run(IDM_EXPORT_FRAMES, {Press(IDOK), ChooseName("kite.png"), Press(IDYES), read});
        EXPECT_TRUE(said.starts_with("kite-002.png\n\nThis file can't be written.\n")) << said;
    };
    WriteAll(File("kite-002.png"), "old");
    SetFileAttributesW(second.c_str(), FILE_ATTRIBUTE_READONLY);
    refused("read-only");
    SetFileAttributesW(second.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(Names(), Strings({"kite-002.png"}));
    EXPECT_EQ(ReadAll(File("kite-002.png")).size(), 3u);
    DeleteFileW(second.c_str());
    CreateDirectoryW(second.c_str(), nullptr);
    refused("a folder");
    EXPECT_EQ(Names(), Strings());
    EXPECT_TRUE(GetFileAttributesW(second.c_str()) & FILE_ATTRIBUTE_DIRECTORY);
}

TEST_F(ToolsTest, WhatHasNoPicturesIsNotExported) {
    Show(MadeAnimation(40, 30).List());
    Run(IDM_EXPORT_FRAMES, {Read("There are no frames in this document.", IDOK)});
    Show(MadeAnimation(65535, 65535).Image({0, 0, 2, 2}).List());
    Run(IDM_EXPORT_FRAMES, {Read("The screen of this document is too large to be exported.", IDOK)});
    Command(IDM_CLOSE);
    Command(IDM_EXPORT_FRAMES);
}

TEST_F(ToolsTest, CheckListsWhatItFindsAndLeadsThere) {
    MadeAnimation made(10, 4);
    made.Control(0, 0).Image({0, 0, 10, 4});   // lines 1, 2
    made.Control(0, 10).Image({5, 0, 10, 4});  // lines 3, 4
    made.Comment().PlainText("Z", {0, 0, 8, 8, 8, 8, 1, 0}).Control(0, 10).Image({0, 0, 10, 4});
    Show(made.List());
    const Steps look = [&](HWND dialog) {
        HWND list = GetDlgItem(dialog, IDC_FINDINGS_LIST);
        Strings texts;
        for (WPARAM i = 0; i < static_cast<WPARAM>(SendMessageW(list, LB_GETCOUNT, 0, 0)); ++i) {
            wchar_t text[500] = L"";
            SendMessageW(list, LB_GETTEXT, i, reinterpret_cast<LPARAM>(text));
            texts.push_back(Ansi1252FromWide(text));
        }
        ASSERT_EQ(texts.size(), 3u);
        EXPECT_TRUE(texts[0].starts_with("Line 5: the image reaches beyond the screen;")) << texts[0];
        EXPECT_TRUE(texts[1].starts_with("Line 2: a delay of 0;")) << texts[1];
        EXPECT_EQ(texts[2], "Line 7: browsers do not show plain texts.");
        EXPECT_EQ(GetFocus(), list);
        for (const auto& [entry, line] : {std::pair(2, 6), {0, 4}, {1, 1}}) {
            SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(entry), 0);
            SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(IDC_FINDINGS_LIST, LBN_SELCHANGE), 0);
            EXPECT_EQ(Selection(), line);
            EXPECT_EQ(ControlText(dialog, IDC_FINDINGS_TEXT), texts[static_cast<size_t>(entry)]);
        }
        PressButton(dialog, IDCANCEL);
    };
    Run(IDM_CHECK, {look});
    EXPECT_EQ(Selection(), 1);
    EXPECT_FALSE(documentChanged);
    {
        const StoppedWork stopped;
        Run(IDM_CHECK, {Press(IDCANCEL)});
    }
    Open(MakeGif("good.gif"));
    Run(IDM_CHECK, {Read("Nothing was found that may surprise in players.", IDOK)});
    Command(IDM_CLOSE);
    Command(IDM_CHECK);
}

TEST_F(ToolsTest, CheckTellsDamageAsItIsAfterEdits) {
    settings.carefulMode = 1;
    GifBytes bytes;
    bytes.Header("GIF89a", 2, 2, 0x81).Comment("first").SmallImage().Add({0x2C, 0, 0, 0, 0, 2, 0, 2, 0, 0});
    WriteAll(File("cut.gif"), bytes.Add({2, 2, 0x0C}));
    Open(File("cut.gif"));
    auto damageAt = [&](const std::string& line) {
        return [=](HWND dialog) {
            wchar_t text[500] = L"";
            SendDlgItemMessageW(dialog, IDC_FINDINGS_LIST, LB_GETTEXT, 0, reinterpret_cast<LPARAM>(text));
            EXPECT_TRUE(Ansi1252FromWide(text).starts_with(line + ": at byte ")) << Ansi1252FromWide(text);
            PressButton(dialog, IDCANCEL);
        };
    };
    Run(IDM_CHECK, {damageAt("Line 4")});
    Select(1);
    Command(IDM_DELETE);
    Run(IDM_CHECK, {damageAt("Line 3")});
    Command(IDM_UNDO);
    Run(IDM_CHECK, {damageAt("Line 4")});
}

}  // namespace
