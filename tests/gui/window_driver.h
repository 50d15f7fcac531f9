// The editor's real main window in the test's own process, driven by the messages a user's action makes.
// Modal dialogs are answered with DialogAnswers (tests/gui/dialog_answers.h).
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/wide_text_win32.h"
#include "tests/gui/dialog_answers.h"
#include "tests/gui/step_watch.h"
#include "tests/support/test_blocks.h"
#include "windows/app/block_list_view.h"
#include "windows/app/document_history.h"
#include "windows/app/main_window.h"
#include "windows/app/settings_file.h"
#include "windows/app/shell_state.h"
#include "windows/app/start_up.h"
#include "windows/ids/command_ids.h"
#include "windows/services/settings.h"
#include "windows/services/shell_objects.h"

// Dispatches all waiting messages.
inline void PumpMessages() {
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// A fixture: every test gets the window as the program has it after its start, without a document, with default
// settings, and a new empty folder for its files, which also takes the place of the settings folder.
class ShellTest : public testing::Test {
protected:
    void SetUp() override {
        StartAfresh();
        CreateShellObjects(GetModuleHandleW(nullptr));
        RegisterMainWindowClass();
        PrepareMainWindow();
        ShowMainWindow(SW_SHOW);
        PumpMessages();
    }
    void TearDown() override {
        if (IsWindow(hMainWindow)) DestroyWindow(hMainWindow);
        PumpMessages();  // takes the quit message away, which would end the next dialog
        DestroyBlockList(&document);
        DeleteShellObjects();
        UnregisterClassW(kMainWindowClass, hInstance);
    }
    // All of SetUp but the window, for tests that start the program themselves.
    void StartAfresh() {
        settings = Settings();
        settingsFolder = Folder();
        document = {};
        documentChanged = false;
        currentFileName.clear();
        documentIsNamed = false;
        partlyReadFile.clear();
        selectedLine = 0;
        StartHistory(true);
    }

    // Sends the command and everything that it posts. What it changes of the document must be one step.
    void Command(int id) {
        StepWatch watch(id);
        SendMessageW(hMainWindow, WM_COMMAND, static_cast<WPARAM>(id), 0);
        PumpMessages();
    }
    // Through the open-file message; a missing file shows its message.
    void Open(const std::string& path) {
        Command(IDM_CLOSE);
        SendMessageW(hMainWindow, UM_OPENFILE, 0, reinterpret_cast<LPARAM>(path.c_str()));
        PumpMessages();
    }
    // As a click does: with the notification.
    void Select(int line) {
        SelectLine(hMainWindow, line);
        Command(MAKELONG(IDC_BLOCK_LIST, LBN_SELCHANGE));
    }
    void DoubleClick() { Command(MAKELONG(IDC_BLOCK_LIST, LBN_DBLCLK)); }  // on the selected line

    // The list's lines in Windows-1252, with the separator byte 0xFE.
    std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        wchar_t text[1024];
        auto address = reinterpret_cast<LPARAM>(text);
        while (SendDlgItemMessageW(hMainWindow, IDC_BLOCK_LIST, LB_GETTEXT, lines.size(), address) != LB_ERR)
            lines.push_back(Ansi1252FromWide(text));
        return lines;
    }
    int Selection() const { return SelectedLine(hMainWindow); }
    std::string Title() const {  // UTF-8
        wchar_t title[1024] = L"";
        GetWindowTextW(hMainWindow, title, 1024);
        return Utf8FromWide(title);
    }
    bool IsEnabled(int command) const {
        return (GetMenuState(GetMenu(hMainWindow), static_cast<UINT>(command), MF_BYCOMMAND) & MF_GRAYED) == 0;
    }
    // As the File menu shows them, the newest first.
    std::vector<std::string> RecentFiles() const {
        std::vector<std::string> names;
        wchar_t text[1024];
        for (UINT id = IDM_RECENT_FIRST; GetMenuStringW(GetMenu(hMainWindow), id, text, 1024, MF_BYCOMMAND) > 0; ++id)
            names.push_back(Utf8FromWide(text));
        return names;
    }

    // Path of `name` in this test's own folder.
    std::string File(const std::string& name) const { return Folder() + name; }
    std::string Folder() const {
        return folder_.Path("") + "\\";
    }  // file dialogs remember folders: each test has its own

    // Writes a small valid GIF file (header, comment, image `width` x `height`) into the folder; returns its path.
    std::string MakeGif(const std::string& name, int width = 20, int height = 10) const {
        BlockList list;
        EXPECT_TRUE(NewDocument(&list));
        Append(&list, *MakeCommentBlock(&list));
        Append(&list, *MakeImageBlock(&list, CreateImageBitmap(width, height, nullptr, 8)));
        EXPECT_TRUE(WriteGifFile(list, File(name).c_str()));
        return File(name);
    }

private:
    TempFolder folder_;
};
