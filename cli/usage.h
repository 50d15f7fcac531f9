// Help texts, and the end of a program run.
#pragma once

#include <string>

// Prints what is wrong with the words of `command` and where help is; returns kExitUsage.
int WrongUsage(const char* command, const std::string& what);

// Prints the help of the program (empty name) or of one command; false when there is no such command.
bool PrintHelp(const std::string& command);

// Makes sure that standard output has taken everything; complains and returns false otherwise.
bool FlushOutput();
