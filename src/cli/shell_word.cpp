#include "cli/shell_word.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "cli/json.h"
#include "cli/printable.h"

namespace {

// The shell makes characters of the numbers that stand between $' and '.
std::string WithNumbers(std::string_view name) {
    std::string quoted = "$'";
    while (!name.empty()) {
        const std::optional<unsigned> control = LeadingControl(name);
        for (char c : name.substr(0, control && *control > 0x7F ? 2 : 1)) {
            if (control)
                quoted += "\\x" + HexOf(static_cast<uint8_t>(c));
            else
                quoted += strchr("'\\", c) ? std::string("\\") + c : std::string(1, c);
            name.remove_prefix(1);
        }
    }
    return quoted + "'";
}

}  // namespace

std::string ShellFile(const std::string& name) {
    std::string word = name.size() > 1 && name[0] == '-' ? "./" + name : name;
    const bool isPlain = !word.empty() && std::ranges::all_of(word, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || strchr("_-./+,:@", c);
    });
    if (isPlain) return word;
    if (Printable(word) != word) return WithNumbers(word);
    std::string quoted = "'";
    for (char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}
