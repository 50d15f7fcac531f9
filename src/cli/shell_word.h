// Commands that are printed to be pasted.
#pragma once

#include <string>

// The name of a file as a word that a POSIX shell takes: in quotes when it has more than letters, digits and a few
// signs, and with its folder when it would be taken for an option. Control characters become numbers in $'...', which
// shells know by the edition of 2024, and bash and zsh of any.
std::string ShellFile(const std::string& name);
