// The names for the file-identity comment: the options "--owner" and "--organisation" of the commands that save.
#pragma once

#include <string>

#include "cli/options.h"
#include "platform/identity.h"

// What is wrong with the names that are given, or an empty text.
std::string WrongNames(const Options& options);

// Whether at least one of them is given.
bool NamesAreGiven(const Options& options);

// The names that are given. One that is not given is the system's, empty where that has none.
Identity NamesOf(const Options& options);
