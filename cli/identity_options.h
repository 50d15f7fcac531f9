// "--owner NAME" and "--organisation NAME" of the commands that save.
#pragma once

#include "cli/options.h"

// Puts the given names, empty ones by default, into the file-identity comment of files saved from now on.
void ChooseIdentity(const Options& options);
