#include "tests/gui/window_driver.h"

#include <cstring>
#include <filesystem>
#include <fstream>

#include "app/block_list_view.h"
#include "app/main_window.h"
#include "app/services/settings.h"
#include "app/settings_file.h"
#include "app/start_up.h"
#include "gif/default_blocks.h"
#include "gif/gif_writer.h"
#include "platform/wide_text.h"

namespace fs = std::filesystem;

namespace {

// Tells the main window what its list box tells it.
void Notify(UINT notification) {
    HWND list = GetDlgItem(hMainWindow, IDC_BLOCK_LIST);
    SendMessageW(hMainWindow, WM_COMMAND, MAKEWPARAM(IDC_BLOCK_LIST, notification), reinterpret_cast<LPARAM>(list));
    PumpMessages();
}

}  // namespace

void ShellTest::SetUp() {
    StartAfresh();
    CreateShellObjects(GetModuleHandleW(nullptr));
    RegisterMainWindowClass();
    PrepareMainWindow();
    ShowMainWindow(SW_SHOW);
    PumpMessages();
}

void ShellTest::StartAfresh() {
    static DWORD made = GetCurrentProcessId();  // file dialogs remember folders: every test has one of its own
    fs::path folder = fs::temp_directory_path() / ("zephyr_gui_tests_" + std::to_string(++made));
    fs::create_directories(folder);
    folder_ = Utf8FromWide(folder.wstring()) + "\\";
    settings = Settings();
    strcpy(settingsFolder, folder_.c_str());
    document = {};
    documentChanged = false;
    currentFileName[0] = 0;
    selectedLine = 0;
}

void ShellTest::TearDown() {
    if (IsWindow(hMainWindow)) DestroyWindow(hMainWindow);
    PumpMessages();  // takes the quit message away, which would end the next dialog
    DestroyBlockList(&document);
    DeleteShellObjects();
    UnregisterClassW(kMainWindowClass, hInstance);
    fs::remove_all(WideFromUtf8(folder_));
}

void ShellTest::Command(int id) {
    SendMessageW(hMainWindow, WM_COMMAND, static_cast<WPARAM>(id), 0);
    PumpMessages();
}

void ShellTest::Open(const std::string& path) {
    Command(IDM_CLOSE);
    SendMessageW(hMainWindow, UM_OPENFILE, 0, reinterpret_cast<LPARAM>(path.c_str()));
    PumpMessages();
}

void ShellTest::Select(int line) {
    SelectLine(hMainWindow, line);
    Notify(LBN_SELCHANGE);
}

void ShellTest::DoubleClick() {
    Notify(LBN_DBLCLK);
}

std::vector<std::string> ShellTest::Lines() const {
    std::vector<std::string> lines;
    wchar_t text[1024];
    auto read = [&] {
        return SendDlgItemMessageW(hMainWindow, IDC_BLOCK_LIST, LB_GETTEXT, lines.size(),
                                   reinterpret_cast<LPARAM>(text)) != LB_ERR;
    };
    while (read()) lines.push_back(Ansi1252FromWide(text));
    return lines;
}

int ShellTest::Selection() const {
    return SelectedLine(hMainWindow);
}

std::string ShellTest::Title() const {
    wchar_t title[1024] = L"";
    GetWindowTextW(hMainWindow, title, 1024);
    return Utf8FromWide(title);
}

bool ShellTest::IsEnabled(int command) const {
    return !(GetMenuState(GetMenu(hMainWindow), static_cast<UINT>(command), MF_BYCOMMAND) & (MF_GRAYED | MF_DISABLED));
}

std::vector<std::string> ShellTest::RecentFiles() const {
    std::vector<std::string> names;
    wchar_t text[1024];
    for (UINT id = IDM_RECENT_FIRST; GetMenuStringW(GetMenu(hMainWindow), id, text, 1024, MF_BYCOMMAND) > 0; ++id)
        names.push_back(Utf8FromWide(text));
    return names;
}

std::string ShellTest::MakeGif(const std::string& name, int width, int height) const {
    BlockList list;
    EXPECT_TRUE(NewDocument(&list));
    for (uint16_t kind : {kCommentBlock, kImageBlock}) {
        Block block;
        MemoryHandle bitmap = kind == kImageBlock ? CreateImageBitmap(width, height, nullptr, 8) : nullptr;
        EXPECT_TRUE(MakeDefaultBlock(nullptr, &list, &block, kind, bitmap, nullptr) && AppendBlock(&list, &block));
    }
    EXPECT_TRUE(WriteGifFile(list, File(name).c_str()));
    DestroyBlockList(&list);
    return File(name);
}

void PumpMessages() {
    for (MSG message; PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE);) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

std::string ReadWholeFile(const std::string& path) {
    std::ifstream file(fs::path(WideFromUtf8(path)), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteWholeFile(const std::string& path, const std::string& content) {
    std::ofstream file(fs::path(WideFromUtf8(path)), std::ios::binary);
    EXPECT_TRUE(file << content << std::flush);
}
