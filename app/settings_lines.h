// The lines of a settings file.
#pragma once

#include <string_view>

#include "platform/file.h"

constexpr int kSettingsLineBytes = 127;  // what is longer is cut

struct SettingsLine {
    std::string_view key;    // may be empty
    std::string_view value;  // what stands behind the equals signs
};

// Reads the lines of a settings file one by one.
class SettingsReader {
public:
    explicit SettingsReader(File* file) : file_(file) {}

    // Gets the next line that is no comment. False at the end of the file. The texts are valid until the next call.
    bool Next(SettingsLine* line);

private:
    bool ReadLine();

    File* file_;
    char text_[kSettingsLineBytes] = {};
    int length_ = 0;
};

// Whether a line with this key is about the setting `name`. The beginning of a name is enough, so that an empty key
// means the first setting.
bool KeyMatches(std::string_view key, std::string_view name);

// The decimal number that `value` begins with, or 0; what exceeds 32 bits counts as the largest number.
uint32_t LeadingNumber(std::string_view value);
