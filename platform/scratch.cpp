#include <new>

#include "platform/faults.h"
#include "platform/memory.h"

bool ScratchMayBeHad() {
    return !FaultDue(faults.allocationsUntilFailure);
}

std::unique_ptr<uint8_t[]> AllocateScratch(uint64_t bytes) {
    if (!ScratchMayBeHad() || bytes > SIZE_MAX / 2) return nullptr;
    return std::unique_ptr<uint8_t[]>(new (std::nothrow) uint8_t[static_cast<size_t>(bytes)]);
}
