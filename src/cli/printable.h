// Text that is printed for people.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// `text` (UTF-8) with every control character (U+0000 to U+001F and U+007F to U+009F) written as \xNN, so that what is
// printed stays on its line and drives no terminal. Backslashes stay single.
std::string Printable(std::string_view text);

// The number of the control character with which `text` (UTF-8) begins, if any. Those from U+0080 take two bytes.
std::optional<unsigned> LeadingControl(std::string_view text);

// Lines of one kind that are printed; of more only the number is told.
constexpr size_t kMostLinesAlike = 10;
