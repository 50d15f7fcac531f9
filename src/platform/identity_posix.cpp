#include "platform/identity.h"

// There is no registered owner here; the command line takes the names as options.
Identity GetUserIdentity() {
    return {};
}
