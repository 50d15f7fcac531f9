// Who uses this copy of the program: the names that go into the file-identity comment of saved files.
#pragma once

#include <string>

struct Identity {
    std::string owner, organisation;  // Windows-1252; empty when not known
};

// The names that the system knows: at most 259 bytes each.
Identity GetUserIdentity();
