// The words that the system hands to the program.
#pragma once

#include "cli/commands.h"

// The command line's words, without the program's name, in UTF-8.
Words CommandLineWords(int count, char** arguments);
