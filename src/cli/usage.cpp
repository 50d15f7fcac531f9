#include "cli/usage.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "cli/commands.h"
#include "cli/printable.h"

int WrongUsage(const char* command, const std::string& what) {
    std::string name = *command ? std::string("zephyr ") + command : "zephyr";
    fprintf(stderr, "%s: %s (see %s --help)\n", name.c_str(), Printable(what).c_str(), name.c_str());
    return kExitUsage;
}

bool FlushOutput() {
    if (fflush(stdout) == 0 && !ferror(stdout)) return true;
    fprintf(stderr, "zephyr: standard output: %s\n", strerror(errno));
    return false;
}
