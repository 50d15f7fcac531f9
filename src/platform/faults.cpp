#include "platform/faults.h"

Faults faults;
