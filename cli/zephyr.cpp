#include <algorithm>
#include <cstdio>
#include <exception>

#include "cli/commands.h"
#include "cli/usage.h"

namespace {

struct Command {
    const char* name;
    int (*run)(const Words& words);
};

constexpr Command kCommands[] = {
    {"list", RunList},
    {"save", RunSave},
    {"extract", RunExtract},
    {"build", RunBuild},
};

bool WantsHelp(const Words& words) {
    auto end = std::find(words.begin(), words.end(), "--");
    return std::find(words.begin(), end, "--help") != end;
}

int Run(const Words& words) {
    if (words.empty()) return WrongUsage("", "give a command");
    const std::string& name = words[0];
    if (name == "--version") {
        puts("zephyr " ZEPHYR_VERSION);
        return FlushOutput() ? kExitDone : kExitFailed;
    }
    if (name == "--help") return PrintHelp("") && FlushOutput() ? kExitDone : kExitFailed;
    Words rest(words.begin() + 1, words.end());
    for (const Command& command : kCommands) {
        if (name != command.name) continue;
        if (WantsHelp(rest)) return PrintHelp(name) && FlushOutput() ? kExitDone : kExitFailed;
        return command.run(rest);
    }
    return WrongUsage("", "unknown command " + name);
}

}  // namespace

int RunZephyr(const Words& words) {
    // Documents live in memory that reports its end by a null handle; only texts on the way to the terminal can throw.
    try {
        return Run(words);
    } catch (const std::exception&) {
        fputs("zephyr: out of memory\n", stderr);
        return kExitFailed;
    }
}
