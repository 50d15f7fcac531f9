// What identity.cpp needs of the operating system. Nobody else includes this.
#pragma once

#include "platform/identity.h"

// Fills the names that the system knows into `identity`, which comes in zeroed.
void ReadSystemIdentity(Identity* identity);
