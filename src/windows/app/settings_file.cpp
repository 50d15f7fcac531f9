#include "windows/app/settings_file.h"

#include <cstdio>
#include <ctime>
#include <vector>

#include "platform/file.h"
#include "platform/wide_text_win32.h"
#include "windows/app/options.h"
#include "windows/app/recent_files.h"
#include "windows/app/settings_lines.h"
#include "windows/services/careful.h"
#include "windows/services/settings.h"

std::string settingsFolder;

namespace {

enum SettingType { kYesNo = 1, kText = 2, kNumber = 4 };

struct SettingRow {
    const char* name;
    void* value;  // uint32_t, or std::string for a text
    SettingType type;
    bool skipOnRead;
};

constexpr char kRecentFileKey[] = "FileMenuItem";

const SettingRow kRows[] = {
    {"ShowStartupBanner", &settings.showStartupBanner, kYesNo, false},
    {"InterlaceDelay", &settings.interlaceDelay, kNumber, false},
    {"FileMenuRange", &settings.fileMenuRange, kNumber, false},
};

std::string SettingsPath(const std::string& folder) {
    std::string path = folder;
    if (path.empty()) return path;
    if (path.back() != '\\') path += '\\';
    return path + "KLMZEP.INI";
}

void TakeSetting(const SettingRow& row, std::string_view value) {
    if (row.type == kText) {
        static_cast<std::string*>(row.value)->assign(value);
    } else {
        *static_cast<uint32_t*>(row.value) = LeadingNumber(value);
    }
}

void TakeLine(const SettingsLine& line) {
    for (const SettingRow& row : kRows) {
        if (row.skipOnRead || !KeyMatches(line.key, row.name)) continue;
        return TakeSetting(row, line.value);
    }
    // Options came later: no key that once meant something else, or nothing, may switch one on.
    for (const Option& option : Options())
        if (line.key == option.key) settings.*option.value = LeadingNumber(line.value);
}

template <typename Take>
void ForEachLine(const std::string& folder, Take take) {
    std::string path = SettingsPath(folder);
    File file;
    if (path.empty() || !file.OpenForReading(path.c_str())) return;
    SettingsReader reader(&file);
    for (SettingsLine line; reader.Next(&line);) take(line);
}

// The recent files in the file, the newest first.
std::vector<std::string> StoredFiles(const std::string& folder) {
    std::vector<std::string> names;
    ForEachLine(folder, [&names](const SettingsLine& line) {
        if (KeyMatches(line.key, kRecentFileKey)) names.emplace(names.begin(), line.value);
    });
    return names;
}

// Another editor may have written the file since this one read it.
std::vector<std::string> FilesToKeep(HWND window, const std::string& folder) {
    return Careful(Care::kRecentFilesMerged) ? MergeRecentFiles(window, StoredFiles(folder)) : RecentFiles(window);
}

std::string LocalTime() {
    constexpr int kTimeCharacters = 24;
    time_t now = time(nullptr);
    const char* text = ctime(&now);
    return text ? std::string(text).substr(0, kTimeCharacters) : std::string();
}

std::string SettingText(const SettingRow& row) {
    return row.type == kText ? *static_cast<const std::string*>(row.value)
                             : std::to_string(*static_cast<const uint32_t*>(row.value));
}

void WriteLine(File* file, const std::string& line) {
    file->Write(line.data(), line.size());
    file->Write("\r\n", 2);
}

void WriteRecentFiles(File* file, const std::vector<std::string>& names) {
    WriteLine(file, ";----- Menu items ------");
    WriteLine(file, "[KLMZephyrMenuItems]");
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        if (!name->empty()) WriteLine(file, std::string(kRecentFileKey) + " = " + *name);
}

// Only what is not as it is by default, so that the file of someone without options is the one it always was. At the
// end, and without a blank line, which the reading of every version takes for the first setting.
void WriteOptions(File* file) {
    const Settings usual;
    bool isBegun = false;
    for (const Option& option : Options()) {
        const uint32_t value = settings.*option.value;
        if (value == usual.*option.value) continue;
        if (!isBegun) WriteLine(file, "[KLMZephyrOptions]");
        isBegun = true;
        WriteLine(file, std::string(option.key) + " = " + std::to_string(value));
    }
}

}  // namespace

void FindSettingsFolder() {
    wchar_t folder[MAX_PATH];
    UINT length = GetWindowsDirectoryW(folder, MAX_PATH);
    settingsFolder = length < MAX_PATH ? Utf8FromWide({folder, length}) : std::string();
}

void ReadSettings(const std::string& folder) {
    ForEachLine(folder, TakeLine);
}

void ReadRecentFiles(HWND window, const std::string& folder) {
    ForEachLine(folder, [window](const SettingsLine& line) {
        if (KeyMatches(line.key, kRecentFileKey)) AddRecentFile(window, std::string(line.value));
    });
    NoteRecentFilesRead(window);
}

void WriteSettings(HWND window, const std::string& folder) {
    const std::vector<std::string> names = FilesToKeep(window, folder);
    std::string path = SettingsPath(folder);
    File file;
    if (path.empty() || !file.CreateReplacement(path.c_str())) return;
    WriteLine(&file, ";Kelmor Zephyr configuration file");
    WriteLine(&file, ";KLM Zephyr");
    WriteLine(&file, ";Last updated " + LocalTime());
    WriteLine(&file, ";");
    WriteLine(&file, "[KLMZephyr]");
    for (const SettingRow& row : kRows) WriteLine(&file, std::string(row.name) + " = " + SettingText(row));
    WriteRecentFiles(&file, names);
    WriteOptions(&file);
    file.Close();
}
