#include "windows/app/settings_lines.h"

#include <algorithm>

#include "platform/text_encoding.h"
#include "platform/wide_text_win32.h"

namespace {

// The beginning of a name is enough for a key, so that an empty key means the first setting.
constexpr bool kQuirkKeysMatchByPrefix = true;

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

bool IsUtf8(File* file) {
    Utf8Check check;
    for (int c = ReadByte(*file); c >= 0; c = ReadByte(*file)) check.Add(static_cast<uint8_t>(c));
    return check.Holds();
}

bool ContinuesCharacter(int byte) {
    return (byte & 0xC0) == 0x80;
}

// Takes the last character, of which not all bytes are there.
void DropLastCharacter(std::string* utf8) {
    while (!utf8->empty() && ContinuesCharacter(utf8->back())) utf8->pop_back();
    if (!utf8->empty()) utf8->pop_back();
}

}  // namespace

SettingsReader::SettingsReader(File* file) : file_(file), isUtf8_(IsUtf8(file)) {
    file->Seek(0);
}

bool SettingsReader::ReadLine() {
    text_.clear();
    int c = ReadByte(*file_);
    if (c < 0 || c == kTextEnd) return false;
    for (; c >= 0 && c != '\n' && text_.size() < kQuirkSettingsLineBytes; c = ReadByte(*file_))
        text_ += static_cast<char>(c);
    if (isUtf8_ && ContinuesCharacter(c)) DropLastCharacter(&text_);
    while (c >= 0 && c != '\n') c = ReadByte(*file_);
    return true;
}

bool SettingsReader::Next(SettingsLine* line) {
    do {
        if (!ReadLine()) return false;
    } while (!text_.empty() && text_[0] == ';');
    if (!isUtf8_) text_ = Utf8FromWide(WideFromSystemAnsi(text_));
    *line = SplitLine(text_);
    return true;
}

bool KeyMatches(std::string_view key, std::string_view name) {
    return kQuirkKeysMatchByPrefix ? name.starts_with(key) : name == key;
}

uint32_t LeadingNumber(std::string_view value) {
    uint64_t number = 0;
    for (char c : value) {
        if (c < '0' || c > '9') break;
        number = std::min<uint64_t>(number * 10 + static_cast<uint64_t>(c - '0'), UINT32_MAX);
    }
    return static_cast<uint32_t>(number);
}
