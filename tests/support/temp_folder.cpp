#include "tests/support/temp_folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace fs = std::filesystem;

namespace {

fs::path PathOf(const std::string& utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

std::string Utf8Of(const fs::path& path) {
    std::u8string utf8 = path.u8string();
    return {utf8.begin(), utf8.end()};
}

}  // namespace

TempFolder::TempFolder() {
    static std::random_device device;
    fs::path path = fs::temp_directory_path() / ("zephyr-test-" + std::to_string(device()));
    fs::create_directories(path);
    path_ = Utf8Of(path);
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(PathOf(path_), ignored);
}

std::string TempFolder::Path(const std::string& name) const {
    return name.empty() ? path_ : Utf8Of(PathOf(path_) / PathOf(name));
}

std::vector<std::string> TempFolder::Names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(PathOf(path_))) names.push_back(Utf8Of(entry.path().filename()));
    std::sort(names.begin(), names.end());
    return names;
}

std::string Repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

Bytes ReadAll(const std::string& path) {
    std::ifstream in(PathOf(path), std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}

void WriteAll(const std::string& path, std::string_view content) {
    std::ofstream(PathOf(path), std::ios::binary) << content;
}

void WriteAll(const std::string& path, const Bytes& content) {
    WriteAll(path, {reinterpret_cast<const char*>(content.data()), content.size()});
}

bool FileExists(const std::string& path) {
    return fs::exists(PathOf(path));
}
