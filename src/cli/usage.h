// The end of a program run: wrong words, and output that did not get out.
#pragma once

#include <string>

// Prints what is wrong with the words of `command` and where help is; returns kExitUsage.
int WrongUsage(const char* command, const std::string& what);

// Makes sure that standard output has taken everything; complains and returns false otherwise.
bool FlushOutput();
