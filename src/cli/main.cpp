#include "cli/arguments.h"
#include "cli/commands.h"

int main(int count, char** arguments) {
    return RunZephyr(CommandLineWords(count, arguments));
}
