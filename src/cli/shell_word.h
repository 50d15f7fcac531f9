// Commands that are printed to be pasted.
#pragma once

#include <string>

// The name of a file as a word that a POSIX shell takes: in quotes when it has more than letters, digits and a few
// signs, and with its folder when it would be taken for an option.
std::string ShellFile(const std::string& name);
