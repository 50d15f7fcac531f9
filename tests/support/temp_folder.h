// Files that a test makes and leaves behind nowhere.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using Bytes = std::vector<uint8_t>;

// An empty folder of its own, deleted with all that is in it at the end of the scope.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // The UTF-8 path of `name` in the folder; the folder's own for an empty name.
    std::string Path(const std::string& name) const;
    // The names in the folder, sorted.
    std::vector<std::string> Names() const;

private:
    std::string path_;
};

// `text` so many times: for names that are long in one way and short in another.
std::string Repeated(const std::string& text, int times);

// Content of the file at the UTF-8 path; empty when there is none.
Bytes ReadAll(const std::string& path);
void WriteAll(const std::string& path, const Bytes& content);
void WriteAll(const std::string& path, std::string_view content);
bool FileExists(const std::string& path);
