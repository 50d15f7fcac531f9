#include "app/settings_lines.h"

#include <algorithm>

namespace {

constexpr char kTextEnd = 26;  // ends a text file on Windows

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < ' ';
}

bool EndsKey(char c) {
    return static_cast<unsigned char>(c) <= ' ' || c == '=';
}

std::string_view SkipAll(std::string_view text, char c) {
    size_t first = text.find_first_not_of(c);
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

std::string_view Before(std::string_view text, bool (*isEnd)(char)) {
    return text.substr(0, static_cast<size_t>(std::find_if(text.begin(), text.end(), isEnd) - text.begin()));
}

SettingsLine SplitLine(std::string_view text) {
    text = Before(text, IsControl);
    std::string_view key = Before(text, EndsKey);
    std::string_view value = SkipAll(SkipAll(SkipAll(text.substr(key.size()), ' '), '='), ' ');
    return {key, value};
}

}  // namespace

bool SettingsReader::ReadLine() {
    length_ = 0;
    int c = ReadByte(*file_);
    if (c < 0 || c == kTextEnd) return false;
    for (; c >= 0 && c != '\n'; c = ReadByte(*file_))
        if (length_ < kSettingsLineBytes) text_[length_++] = static_cast<char>(c);
    return true;
}

bool SettingsReader::Next(SettingsLine* line) {
    do {
        if (!ReadLine()) return false;
    } while (length_ > 0 && text_[0] == ';');
    *line = SplitLine({text_, static_cast<size_t>(length_)});
    return true;
}

bool KeyMatches(std::string_view key, std::string_view name) {
    return name.substr(0, key.size()) == key;
}

uint32_t LeadingNumber(std::string_view value) {
    uint64_t number = 0;
    for (char c : value) {
        if (c < '0' || c > '9') break;
        number = std::min<uint64_t>(number * 10 + static_cast<uint64_t>(c - '0'), UINT32_MAX);
    }
    return static_cast<uint32_t>(number);
}
