#include "platform/system_memory.h"
#include "platform/windows_api.h"

// A movable object of 0 bytes would be made discarded, which can't be locked.
SystemMemory::SystemMemory(uint64_t bytes)
    : block_(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes ? static_cast<SIZE_T>(bytes) : 1)) {}

SystemMemory::~SystemMemory() {
    if (block_) GlobalFree(block_);
}

size_t SystemMemory::Size() const {
    return GlobalSize(block_);
}

void* SystemMemory::Lock() {
    return GlobalLock(block_);
}

void SystemMemory::Unlock() {
    GlobalUnlock(block_);
}
