// Who uses this copy of the program: the names that go into the file-identity comment of saved files.
#pragma once

constexpr int kIdentityBytes = 260;  // a name with its terminating NUL

struct Identity {
    char owner[kIdentityBytes];         // Windows-1252
    char organisation[kIdentityBytes];  // Windows-1252
};

// Fills `identity`. A name that is not known is empty.
void GetUserIdentity(Identity* identity);

// Gives the names that GetUserIdentity answers from now on, instead of the system's; longer ones are cut.
// The texts are copied. Null for both goes back to the system's.
void SetUserIdentity(const char* owner, const char* organisation);
