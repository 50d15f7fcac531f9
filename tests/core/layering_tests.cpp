// Includes point downwards: a file names only files of its own floor and of those below.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>

namespace fs = std::filesystem;

namespace {

// Folders by what their files may include beside their own folder. Resources may be named everywhere but in platform.
const std::map<std::string, std::set<std::string>> kMayInclude = {
    {"platform", {}},
    {"gif", {"platform", "imaging"}},
    {"imaging", {"platform", "gif"}},
    {"resources", {"platform", "imaging"}},
    {"app/services", {"platform", "imaging", "gif"}},
    {"imaging/draw", {"platform", "imaging", "gif", "app/services"}},
    {"editing", {"platform", "imaging", "gif"}},
    {"editing/dialogs", {"platform", "imaging", "gif", "imaging/draw", "editing", "app/services"}},
    {"app", {"platform", "imaging", "gif", "imaging/draw", "editing", "editing/dialogs", "app/services"}},
    {"cli", {"platform", "imaging", "gif", "editing"}},
};
const std::set<std::string> kPortable = {"platform", "gif", "imaging", "editing", "cli", "resources"};
const std::set<std::string> kWindowsHeaders = {
    "windows.h", "commctrl.h", "commdlg.h", "shellapi.h", "shlobj.h", "platform/windows_api.h", "platform/wide_text.h"};

// The nearest folder of the table.
std::string FloorOf(const fs::path& file) {
    fs::path folder = file.parent_path();
    while (folder.has_parent_path() && !kMayInclude.count(folder.generic_string())) folder = folder.parent_path();
    return folder.generic_string();
}

void CheckInclude(const std::string& file, const std::string& included, bool isQuoted) {
    std::string floor = FloorOf(file), other = FloorOf(included);
    bool isForWindows = file.find("_win32.cpp") != std::string::npos || kWindowsHeaders.count(file);
    EXPECT_TRUE(!kWindowsHeaders.count(included) || !kPortable.count(floor) || isForWindows)
        << file << " is portable, but includes " << included;
    if (!isQuoted) return;
    EXPECT_TRUE(fs::exists(fs::path(ZEPHYR_SOURCES) / included)) << file << " does not name the floor of " << included;
    bool isText = other == "resources" && floor != "platform" && floor != "imaging";
    EXPECT_TRUE(other == floor || isText || kMayInclude.at(floor).count(other))
        << file << " reaches up to " << included;
}

}  // namespace

TEST(Layering, IncludesPointDownwards) {
    std::set<std::string> floors;
    for (const char* top : {"platform", "gif", "imaging", "editing", "app", "cli", "resources"})
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(ZEPHYR_SOURCES) / top)) {
            if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp") continue;
            std::string file = entry.path().lexically_relative(ZEPHYR_SOURCES).generic_string();
            std::ifstream in(entry.path());
            for (std::string line; std::getline(in, line);) {
                size_t open = line.find_first_of("<\""), close = line.find_first_of(">\"", open + 1);
                if (line.rfind("#include", 0) != 0 || close == std::string::npos) continue;
                CheckInclude(file, line.substr(open + 1, close - open - 1), line[open] == '"');
                floors.insert(FloorOf(file));
            }
        }
    EXPECT_EQ(floors.size(), kMayInclude.size()) << "not all sources were found";
}
