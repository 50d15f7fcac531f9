// The lines of a settings file.
#pragma once

#include <string>
#include <string_view>

#include "platform/file.h"

// What is longer is cut, within a name too, but within no character.
constexpr size_t kQuirkSettingsLineBytes = 127;

struct SettingsLine {
    std::string_view key;    // may be empty
    std::string_view value;  // what stands behind the equals signs
};

// Reads the lines of a settings file one by one: in UTF-8 when the whole file is, otherwise in the system's ANSI code
// page, in which other programs and older systems may have written it.
class SettingsReader {
public:
    // `file` is open for reading and stands at its start.
    explicit SettingsReader(File* file);

    // Gets the next line that is no comment, in UTF-8. False at the end of the file. The texts are valid until the next
    // call.
    bool Next(SettingsLine* line);

private:
    bool ReadLine();

    File* file_;
    bool isUtf8_;
    std::string text_;
};

// Whether a line with this key is about the setting `name`. The beginning of a name is enough, so that an empty key
// means the first setting.
bool KeyMatches(std::string_view key, std::string_view name);

// The decimal number that `value` begins with, or 0; what exceeds 32 bits counts as the largest number.
uint32_t LeadingNumber(std::string_view value);
