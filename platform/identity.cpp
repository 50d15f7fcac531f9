#include "platform/identity.h"

#include <cstring>

#include "platform/system_identity.h"

namespace {

Identity chosen;
bool isChosen = false;

void CopyName(char* to, const char* from) {
    memset(to, 0, kIdentityBytes);
    if (from) strncpy(to, from, kIdentityBytes - 1);
}

}  // namespace

void GetUserIdentity(Identity* identity) {
    if (isChosen) {
        *identity = chosen;
    } else {
        *identity = {};
        ReadSystemIdentity(identity);
    }
}

void SetUserIdentity(const char* owner, const char* organisation) {
    isChosen = owner || organisation;
    CopyName(chosen.owner, owner);
    CopyName(chosen.organisation, organisation);
}
