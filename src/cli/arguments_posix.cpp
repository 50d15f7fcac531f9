#include "cli/arguments.h"

Words CommandLineWords(int count, char** arguments) {
    return Words(arguments + (count > 0 ? 1 : 0), arguments + count);
}
