#include "platform/system_identity.h"

// There is no registered owner here; the command line takes the names as options.
void ReadSystemIdentity(Identity*) {}
