#include "tests/support/temp_folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    static std::random_device device;
    fs::path path = fs::temp_directory_path() / ("zephyr-test-" + std::to_string(device()));
    fs::create_directories(path);
    path_ = path.u8string();
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(fs::u8path(path_), ignored);
}

std::string TempFolder::Path(const std::string& name) const {
    return name.empty() ? path_ : (fs::u8path(path_) / fs::u8path(name)).u8string();
}

std::vector<std::string> TempFolder::Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(fs::u8path(path_)))
        names.push_back(entry.path().filename().u8string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string Repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

Bytes ReadAll(const std::string& path) {
    std::ifstream in(fs::u8path(path), std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}

void WriteAll(const std::string& path, std::string_view content) {
    std::ofstream(fs::u8path(path), std::ios::binary) << content;
}

void WriteAll(const std::string& path, const Bytes& content) {
    WriteAll(path, {reinterpret_cast<const char*>(content.data()), content.size()});
}

bool FileExists(const std::string& path) {
    return fs::exists(fs::u8path(path));
}
