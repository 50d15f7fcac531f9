// The settings file and the list of recent files.
#include <filesystem>

#include "platform/faults.h"
#include "tests/gui/window_driver.h"
#include "windows/app/recent_files.h"

namespace {

using Names = std::vector<std::string>;

class SettingsFileTest : public ShellTest {
protected:
    void Add(const Names& names) {
        for (const std::string& name : names) AddRecentFile(hMainWindow, name);
    }
    void ClearMenu() {
        for (UINT id : {IDM_RECENT_FIRST + 0u, IDM_RECENT_FIRST + 1u})
            DeleteMenu(GetMenu(hMainWindow), id, MF_BYCOMMAND);
    }
};

TEST_F(SettingsFileTest, ReadsWhatALineMeans) {
    using Values = std::vector<uint32_t>;  // of the banner, the delay and the range
    const std::pair<std::string, Values> cases[] = {
        {"ShowStartupBanner = 0\r\nInterlaceDelay = 25\r\nFileMenuRange = 100\r\n", {0, 25, 100}},
        {"Show = 0\r\nFileMenuRange   ==   7 items", {0, 4, 7}},  // the beginning of a name is enough
        {"show = 0\r\nShowStartupBanners = 0\r\n;FileMenuRange = 2\r\n[KLMZephyr]\r\n", {1, 4, 10}},
        {"\r\n", {0, 4, 10}},  // an empty key begins the first name: kQuirkKeysMatchByPrefix
        {"InterlaceDelay = 99999999999999999999\r\n = 6\r\n", {6, 4294967295u, 10}},
        {"Show =\r\nInterlaceDelay = x\r\nFileMenuRange = -3\r\n", {0, 0, 0}},
        {"InterlaceDelay = 8\x1A\r\nFileMenuRange = 2\r\n\x1A\r\nShow = 0", {1, 8, 2}},
        // kQuirkSettingsLineBytes
        {"InterlaceDelay = " + std::string(108, '0') + "12345\r\nFileMenuRange = 3\r\n", {1, 12, 3}},  // 127 bytes
    };
    for (const auto& [content, values] : cases) {
        settings = Settings();
        WriteAll(File("KLMZEP.INI"), content);
        ReadSettings(Folder().c_str());
        EXPECT_EQ((Values{settings.showStartupBanner, settings.interlaceDelay, settings.fileMenuRange}), values)
            << content;
    }
}

// Their keys count only as they are: no other one may switch an option on.
TEST_F(SettingsFileTest, OptionsAreReadByTheirWholeNames) {
    const std::tuple<std::string, uint32_t, uint32_t, uint32_t> cases[] = {
        // careful mode, the memory for steps, and the banner
        {"[KLMZephyrOptions]\r\nCarefulMode = 1\r\n", 1, 256, 1},
        {"CarefulMode=1\r\nShow = 0", 1, 256, 0},
        {"CarefulMode = 1\r\nCarefulMode = 0\r\n", 0, 256, 1},
        {"C = 1\r\nCareful = 1\r\nCarefulModes = 1\r\ncarefulmode = 1\r\n;CarefulMode = 1\r\n", 0, 256, 1},
        {"\r\n = 1\r\n", 0, 256, 1},
        {"CarefulMode = 1\r\n\r\n", 1, 256, 0},
        {"UndoMemory = 32\r\nCarefulMode = 1", 1, 32, 1},
        {"UndoMemory = 0\r\nUndo = 5\r\nUndoMemories = 5", 0, 0, 1},
        {"UndoMemory = 99999999999\r\n", 0, 4294967295u, 1},
    };
    for (const auto& [content, careful, memory, banner] : cases) {
        settings = Settings();
        WriteAll(File("KLMZEP.INI"), content);
        ReadSettings(Folder());
        EXPECT_EQ(settings.carefulMode, careful) << content;
        EXPECT_EQ(settings.undoMemory, memory) << content;
        EXPECT_EQ(settings.showStartupBanner, banner) << content;
    }
}

TEST_F(SettingsFileTest, OptionsAreWrittenOnlyWhileTheyAreNotAsByDefault) {
    std::string without;
    const std::tuple<uint32_t, uint32_t, std::string> cases[] = {
        {0, 256, ""},
        {1, 256, "[KLMZephyrOptions]\r\nCarefulMode = 1\r\n"},
        {0, 0, "[KLMZephyrOptions]\r\nUndoMemory = 0\r\n"},
        {1, 1024, "[KLMZephyrOptions]\r\nCarefulMode = 1\r\nUndoMemory = 1024\r\n"},
        {0, 256, ""},
    };
    for (const auto& [careful, memory, options] : cases) {
        settings.carefulMode = careful;
        settings.undoMemory = memory;
        WriteSettings(hMainWindow, Folder());
        const Bytes bytes = ReadAll(File("KLMZEP.INI"));
        std::string content(bytes.begin(), bytes.end());
        content.erase(content.find("updated ") + 8, strlen("Sat Nov 21 15:18:14 2026"));
        if (without.empty()) without = content;
        EXPECT_EQ(content, without + options);
        settings = Settings();
        ReadSettings(Folder());
        EXPECT_EQ(settings.carefulMode, careful);
        EXPECT_EQ(settings.undoMemory, memory);
    }
}

TEST_F(SettingsFileTest, EverySwitchOfTheOptionsMenuIsKept) {
    const std::tuple<int, uint32_t Settings::*, std::string> cases[] = {
        {IDM_CAREFUL_MODE, &Settings::carefulMode, "CarefulMode"},
        {IDM_READABLE_DETAILS, &Settings::readableDetails, "ReadableDetails"},
        {IDM_PREVIEW, &Settings::preview, "Preview"},
        {IDM_FILMSTRIP, &Settings::filmstrip, "Filmstrip"},
    };
    for (const auto& [command, value, key] : cases) {
        auto isChecked = [item = static_cast<UINT>(command)] {
            return (GetMenuState(GetMenu(hMainWindow), item, MF_BYCOMMAND) & MF_CHECKED) != 0;
        };
        EXPECT_FALSE(isChecked()) << key;
        Command(command);
        EXPECT_TRUE(isChecked()) << key;
        WriteSettings(hMainWindow, Folder());
        const Bytes bytes = ReadAll(File("KLMZEP.INI"));
        const std::string content(bytes.begin(), bytes.end()), options = "[KLMZephyrOptions]\r\n" + key + " = 1\r\n";
        EXPECT_EQ(content.substr(std::min(content.find("[KLMZephyrOptions]"), content.size())), options);
        Command(command);
        EXPECT_EQ(settings.*value, 0u) << key;
        ReadSettings(Folder());
        EXPECT_EQ(settings.*value, 1u) << key;
        settings = Settings();
    }
}

TEST_F(SettingsFileTest, TheWindowWritesTheFileWhenItGoes) {
    settings.interlaceDelay = 12;
    Add({"C:\\one.gif", "d:\\\xC3\xA9t\xC3\xA9.gif"});
    for (const std::string& nowhere : {std::string(), File("no such folder\\")}) {
        WriteSettings(hMainWindow, nowhere.c_str());
        ReadSettings(nowhere.c_str());
    }
    Command(IDM_EXIT);
    const Bytes bytes = ReadAll(File("KLMZEP.INI"));
    std::string content(bytes.begin(), bytes.end());
    EXPECT_EQ(content.erase(content.find("updated ") + 8, strlen("Sat Nov 21 15:18:14 2026")),
              ";Kelmor Zephyr configuration file\r\n;KLM Zephyr\r\n;Last updated \r\n;\r\n[KLMZephyr]\r\n"
              "ShowStartupBanner = 1\r\nInterlaceDelay = 12\r\nFileMenuRange = 10\r\n;----- Menu items ------\r\n"
              "[KLMZephyrMenuItems]\r\nFileMenuItem = C:\\one.gif\r\nFileMenuItem = d:\\\xC3\xA9t\xC3\xA9.gif\r\n");
}

TEST_F(SettingsFileTest, AFailedWriteLeavesTheOldFile) {
    const std::string old = "FileMenuRange = 3\r\nMine = 1\r\n";
    WriteAll(File("KLMZEP.INI"), old);
    faults.writesUntilFailure = 0;
    WriteSettings(hMainWindow, Folder());
    faults.writesUntilFailure = Faults::kNever;
    EXPECT_EQ(ReadAll(File("KLMZEP.INI")), Bytes(old.begin(), old.end()));
    WriteSettings(hMainWindow, Folder());
    EXPECT_NE(ReadAll(File("KLMZEP.INI")), Bytes(old.begin(), old.end()));
    auto files = std::filesystem::directory_iterator(WideFromUtf8(Folder()));
    EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "nothing else is left behind";
}

TEST_F(SettingsFileTest, NamesAreUtf8OrElseInTheSystemsCodePage) {
    ASSERT_EQ(WideFromSystemAnsi("\xE9"), L"\xE9") << "the code page that this test is written for";
    const std::string kStart = "C:\\" + std::string(107, 'x'), kHan = "\xE6\xBC\xA2";  // with the key 125 bytes
    const std::pair<std::string, Names> cases[] = {
        {"FileMenuItem = C:\\\xE9.gif\r\n", {"C:\\\xC3\xA9.gif"}},
        {"FileMenuItem = C:\\\xC3\xA9.gif\r\n", {"C:\\\xC3\xA9.gif"}},
        {"FileMenuItem = C:\\\xC3\xA9.gif\r\n;\xE9\r\n", {"C:\\\xC3\x83\xC2\xA9.gif"}},    // the file is of one kind
        {"FileMenuItem = " + kStart + "\xE9\xE9\xE9\r\n", {kStart + "\xC3\xA9\xC3\xA9"}},  // cut at 127 bytes
        {"FileMenuItem = " + kStart + "\xC3\xA9\xC3\xA9\r\n", {kStart + "\xC3\xA9"}},
        {"FileMenuItem = " + kStart + kHan + "\r\nFile = C:\\a", {"C:\\a", kStart}},  // not within a character
    };
    for (const auto& [content, listed] : cases) {
        ClearMenu();
        WriteAll(File("KLMZEP.INI"), content);
        ReadRecentFiles(hMainWindow, Folder());
        EXPECT_EQ(RecentFiles(), listed) << content;
    }
}

TEST_F(SettingsFileTest, ListsFullPathsOnceNewestFirst) {
    const std::string kLong = "C:\\" + Repeated("\xE6\xBC\xA2", 256);  // 259 characters of 774 bytes
    const std::tuple<uint32_t, Names, Names> cases[] = {
        {10, {"C:\\A.GIF", "C:\\b.gif \t\r\n", "c:\\a.gif"}, {"C:\\b.gif", "C:\\A.GIF"}},
        {10, {"C:\\\xC3\x89.gif", "C:\\\xC3\xA9.gif"}, {"C:\\\xC3\x89.gif"}},
        {10, {"\\a.gif", "1:\\a.gif", "{:\\a.gif", "C:a.gif", "C:/a.gif", ""}, {}},
        {2, {"C:\\a.gif", "C:\\b.gif", "C:\\c.gif"}, {"C:\\c.gif", "C:\\b.gif"}},
        {UINT32_MAX, {"C:\\a.gif", kLong}, {kLong, "C:\\a.gif"}},
        {0, {"C:\\a.gif"}, {}},
    };
    for (const auto& [range, added, listed] : cases) {
        ClearMenu();
        settings.fileMenuRange = range;
        Add(added);
        EXPECT_EQ(RecentFiles(), listed) << added[0];
    }
}

TEST_F(SettingsFileTest, ARecentFileOpensByItsCommand) {
    // Keys may be cut short.
    WriteAll(File("KLMZEP.INI"), "File = C:\\a.gif\r\n = C:\\b.gif\r\nFileMenuItems = C:\\c.gif\r\nFile = d.gif");
    ReadRecentFiles(hMainWindow, Folder().c_str());
    std::string a = MakeGif("a.gif"), b = MakeGif("b & b.gif");
    Open(b);
    Open(a);
    for (int behind : {1, 4, 5, 500}) Command(IDM_RECENT_FIRST + behind);
    EXPECT_EQ(Title(), "Kelmor Zephyr [ " + b + " ] ");
    // kQuirkListedFileKeepsPlace
    EXPECT_EQ(RecentFiles(), (Names{a, b, "C:\\b.gif", "C:\\a.gif"})) << "a file already listed keeps its place";
}

}  // namespace
