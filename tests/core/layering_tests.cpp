// Includes point downwards: a file names only files of its own floor and of those below.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>

namespace fs = std::filesystem;

namespace {

// Folders by what their files may include. More exact ones count before those that contain them.
const std::map<std::string, std::vector<std::string>> kMayInclude = {
    {"platform", {"platform"}},
    {"imaging", {"platform", "imaging", "gif"}},
    {"gif", {"platform", "imaging", "gif", "resources"}},
    {"imaging/draw", {"platform", "imaging", "gif", "imaging/draw", "app/services", "resources"}},
    {"app/services", {"platform", "imaging", "gif", "app/services", "resources"}},
    {"editing", {"platform", "imaging", "gif", "editing", "resources"}},
    {"editing/dialogs",
     {"platform", "imaging", "gif", "imaging/draw", "editing", "editing/dialogs", "app/services", "resources"}},
    {"app",
     {"platform", "imaging", "gif", "imaging/draw", "editing", "editing/dialogs", "app/services", "app", "resources"}},
    {"cli", {"platform", "imaging", "gif", "editing", "cli", "resources"}},
    {"resources", {"platform", "imaging", "resources"}},
};
const std::vector<std::string> kPortable = {"platform", "gif", "imaging", "editing", "cli", "resources"};

std::string FloorOf(const std::string& file) {
    std::string folder = file.substr(0, file.find_last_of('/'));
    while (!kMayInclude.count(folder) && folder.find('/') != std::string::npos) folder.resize(folder.find_last_of('/'));
    return folder;
}

template <typename List>
bool Contains(const List& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

bool IsWindowsHeader(const std::string& name) {
    return Contains(std::vector<std::string>{"windows.h", "commctrl.h", "commdlg.h", "shellapi.h", "shlobj.h"}, name) ||
           name == "platform/windows_api.h" || name == "platform/wide_text.h";
}

bool MayUseWindows(const std::string& file, const std::string& floor) {
    return !Contains(kPortable, floor) || file.find("_win32.cpp") != std::string::npos ||
           file == "platform/windows_api.h" || file == "platform/wide_text.h";
}

void CheckInclude(const std::string& file, const std::string& included, bool isQuoted) {
    std::string floor = FloorOf(file);
    EXPECT_TRUE(!IsWindowsHeader(included) || MayUseWindows(file, floor))
        << file << " is portable, but includes " << included;
    if (!isQuoted) return;
    EXPECT_TRUE(fs::exists(fs::path(ZEPHYR_SOURCES) / included)) << file << " does not name the floor of " << included;
    EXPECT_TRUE(Contains(kMayInclude.at(floor), FloorOf(included))) << file << " reaches up to " << included;
}

// Returns how many includes the file has.
int CheckFile(const fs::path& path) {
    std::string file = path.lexically_relative(ZEPHYR_SOURCES).generic_string();
    std::ifstream in(path);
    int includes = 0;
    for (std::string line; std::getline(in, line);) {
        size_t open = line.find_first_of("<\"");
        if (line.rfind("#include", 0) != 0 || open == std::string::npos) continue;
        size_t close = line.find_first_of(">\"", open + 1);
        CheckInclude(file, line.substr(open + 1, close - open - 1), line[open] == '"');
        ++includes;
    }
    return includes;
}

}  // namespace

TEST(Layering, IncludesPointDownwards) {
    int includes = 0;
    for (const char* top : {"platform", "gif", "imaging", "editing", "app", "cli", "resources"})
        for (const auto& entry : fs::recursive_directory_iterator(fs::path(ZEPHYR_SOURCES) / top))
            if (entry.path().extension() == ".h" || entry.path().extension() == ".cpp")
                includes += CheckFile(entry.path());
    EXPECT_GT(includes, 200) << "the sources were not found";
}

TEST(Layering, FloorsAreTold) {
    EXPECT_EQ(FloorOf("imaging/draw/draw_image.cpp"), "imaging/draw");
    EXPECT_EQ(FloorOf("imaging/remap.cpp"), "imaging");
    EXPECT_EQ(FloorOf("app/window/main_window.cpp"), "app");
    EXPECT_FALSE(Contains(kMayInclude.at("gif"), FloorOf("editing/palette_match.h")));
}
