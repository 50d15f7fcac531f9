#include "cli/shell_word.h"

#include <algorithm>
#include <cstring>

std::string ShellFile(const std::string& name) {
    std::string word = name.size() > 1 && name[0] == '-' ? "./" + name : name;
    const bool isPlain = !word.empty() && std::ranges::all_of(word, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || strchr("_-./+,:@", c);
    });
    if (isPlain) return word;
    std::string quoted = "'";
    for (char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}
