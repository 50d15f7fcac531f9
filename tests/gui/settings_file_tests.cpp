// The settings file and the list of recent files.
#include "app/settings_file.h"

#include <cstring>

#include "app/recent_files.h"
#include "app/services/settings.h"
#include "app/services/shell_objects.h"
#include "platform/faults.h"
#include "resources/command_ids.h"
#include "tests/gui/window_driver.h"

namespace {

using Names = std::vector<std::string>;

class SettingsFileTest : public ShellTest {
protected:
    std::string IniPath() { return File("KLMZEP.INI"); }

    void Add(const Names& names) {
        for (const std::string& name : names) AddRecentFile(hMainWindow, name.c_str());
    }
};

TEST_F(SettingsFileTest, ReadsWhatALineMeans) {
    const struct {
        std::string content;
        uint32_t banner, delay, range;
    } cases[] = {
        {"", 1, 4, 10},
        {"ShowStartupBanner = 0\r\nInterlaceDelay = 25\r\nFileMenuRange = 100\r\n", 0, 25, 100},
        {"FileMenuRange   ==   7 items", 1, 4, 7},
        {"Show = 0\r\n", 0, 4, 10},  // the beginning of a name is enough
        {"show = 0\r\n", 1, 4, 10},  // upper and lower case differ
        {"ShowStartupBanners = 0\r\n", 1, 4, 10},
        {"\r\n", 0, 4, 10},  // an empty key is the beginning of the first name
        {" FileMenuRange = 2\r\n", 0, 4, 10},
        {"= 6\r\n", 6, 4, 10},
        {";FileMenuRange = 2\r\n[KLMZephyr]\r\n", 1, 4, 10},
        {"InterlaceDelay = x\r\n", 1, 0, 10},
        {"InterlaceDelay = 1\t2\r\n", 1, 1, 10},
        {"InterlaceDelay = 99999999999999999999\r\n", 1, 4294967295u, 10},
        {"InterlaceDelay = 8\x1A\r\nFileMenuRange = 2", 1, 8, 2},
        {"InterlaceDelay = 8\r\n\x1A\r\nFileMenuRange = 2", 1, 8, 10},
        {"InterlaceDelay = " + std::string(108, '0') + "12345\r\nFileMenuRange = 3\r\n", 1, 12, 3},  // 127 bytes
    };
    for (const auto& c : cases) {
        settings = Settings();
        WriteWholeFile(IniPath(), c.content);
        ReadSettings(Folder().c_str());
        EXPECT_EQ(settings.showStartupBanner, c.banner) << c.content;
        EXPECT_EQ(settings.interlaceDelay, c.delay) << c.content;
        EXPECT_EQ(settings.fileMenuRange, c.range) << c.content;
    }
}

TEST_F(SettingsFileTest, WithoutAFileOrAFolderNothingHappens) {
    settings.interlaceDelay = 77;
    ReadSettings(Folder().c_str());
    ReadSettings("");
    EXPECT_EQ(settings.interlaceDelay, 77u);
    WriteSettings(hMainWindow, "");
    strcpy(settingsFolder, File("no such folder\\").c_str());
    DialogAnswers none;
    Command(IDM_EXIT);
    EXPECT_FALSE(IsWindow(hMainWindow));
}

TEST_F(SettingsFileTest, TheWindowWritesTheFileWhenItGoes) {
    settings.interlaceDelay = 12;
    settings.showStartupBanner = 0;
    Add({"C:\\one.gif", "d:\\\xC3\xA9t\xC3\xA9.gif"});
    Command(IDM_EXIT);
    std::string content = ReadWholeFile(IniPath());
    std::string head = ";Kelmor Zephyr configuration file\r\n;KLM Zephyr\r\n;Last updated ";
    std::string tail =
        "\r\n;\r\n[KLMZephyr]\r\nShowStartupBanner = 0\r\nInterlaceDelay = 12\r\nFileMenuRange = 10\r\n"
        ";----- Menu items ------\r\n[KLMZephyrMenuItems]\r\nFileMenuItem = C:\\one.gif\r\n"
        "FileMenuItem = d:\\\xC3\xA9t\xC3\xA9.gif\r\n";
    ASSERT_EQ(content.size(), head.size() + 24 + tail.size()) << content;
    EXPECT_EQ(content.substr(0, head.size()), head);
    EXPECT_EQ(content.substr(head.size() + 24), tail);
    for (int blank : {3, 7, 10, 19}) EXPECT_EQ(content[head.size() + static_cast<size_t>(blank)], ' ') << content;
}

TEST_F(SettingsFileTest, RecentFileKeysMayBeCutShort) {
    WriteWholeFile(IniPath(), "File = C:\\a.gif\r\n = C:\\b.gif\r\nFileMenuItems = C:\\c.gif\r\nFileMenuItem = d.gif");
    ReadRecentFiles(hMainWindow, Folder().c_str());
    EXPECT_EQ(RecentFiles(), (Names{"C:\\b.gif", "C:\\a.gif"}));
}

TEST_F(SettingsFileTest, ListsFullPathsOnceNewestFirst) {
    const struct {
        uint32_t range;
        Names added, listed;
    } cases[] = {
        {10, {"C:\\a.gif", "C:\\b.gif"}, {"C:\\b.gif", "C:\\a.gif"}},
        {10, {"C:\\A.GIF", "C:\\b.gif", "c:\\a.gif"}, {"C:\\b.gif", "C:\\A.GIF"}},
        {10, {"C:\\\xC3\x89.gif", "C:\\\xC3\xA9.gif"}, {"C:\\\xC3\x89.gif"}},
        {10, {"a.gif", "\\a.gif", "1:\\a.gif", "C:a.gif", "\\\\host\\a.gif", "C:/a.gif", ""}, {}},
        {10, {"C:\\a.gif \t\r\n"}, {"C:\\a.gif"}},
        {10, {"C:\\" + std::string(260, 'x')}, {}},
        {2, {"C:\\a.gif", "C:\\b.gif", "C:\\c.gif"}, {"C:\\c.gif", "C:\\b.gif"}},
        {1, {"C:\\a.gif", "C:\\b.gif"}, {"C:\\b.gif"}},
        {0, {"C:\\a.gif"}, {}},
    };
    for (const auto& c : cases) {
        while (DeleteMenu(GetMenu(hMainWindow), IDM_RECENT_FIRST, MF_BYCOMMAND) ||
               DeleteMenu(GetMenu(hMainWindow), IDM_RECENT_FIRST + 1, MF_BYCOMMAND)) {
        }
        settings.fileMenuRange = c.range;
        Add(c.added);
        EXPECT_EQ(RecentFiles(), c.listed) << c.added[0];
        WriteSettings(hMainWindow, Folder().c_str());
        EXPECT_EQ(ReadWholeFile(IniPath()).find("FileMenuItem = ") != std::string::npos, !c.listed.empty());
    }
}

TEST_F(SettingsFileTest, WithoutMemoryTheListStays) {
    Add({"C:\\a.gif"});
    faults.allocationsUntilFailure = 0;
    Add({"C:\\b.gif"});
    faults.allocationsUntilFailure = Faults::kNever;
    EXPECT_EQ(RecentFiles(), Names{"C:\\a.gif"});
}

TEST_F(SettingsFileTest, ARecentFileOpensByItsCommand) {
    std::string a = MakeGif("a.gif"), b = MakeGif("b & b.gif");
    Open(b);
    Open(a);
    Command(IDM_RECENT_FIRST + 1);
    EXPECT_EQ(Title(), "Kelmor Zephyr [ " + b + " ] ");
    EXPECT_EQ(RecentFiles(), (Names{a, b})) << "a file already listed keeps its place";
    for (int behind : {2, 3, 500}) Command(IDM_RECENT_FIRST + behind);
    EXPECT_EQ(Title(), "Kelmor Zephyr [ " + b + " ] ");
}

}  // namespace
