#include "platform/faults.h"
#include "platform/memory.h"
#include "platform/windows_api.h"

MemoryHandle AllocateMemory(uint64_t bytes) {
    if (FaultDue(faults.allocationsUntilFailure) || bytes > SIZE_MAX / 2) return nullptr;
    // A movable object of 0 bytes would be made discarded, which can't be locked.
    return GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes ? static_cast<SIZE_T>(bytes) : 1);
}

MemoryHandle ResizeMemory(MemoryHandle memory, uint64_t bytes) {
    if (!memory || FaultDue(faults.allocationsUntilFailure) || bytes > SIZE_MAX / 2) return nullptr;
    return GlobalReAlloc(memory, bytes ? static_cast<SIZE_T>(bytes) : 1, GMEM_MOVEABLE | GMEM_ZEROINIT);
}

void FreeMemory(MemoryHandle memory) {
    if (memory) GlobalFree(memory);
}

size_t MemorySize(MemoryHandle memory) {
    return memory ? GlobalSize(memory) : 0;
}

void* LockMemory(MemoryHandle memory) {
    if (!memory || FaultDue(faults.locksUntilFailure)) return nullptr;
    return GlobalLock(memory);
}

void UnlockMemory(MemoryHandle memory) {
    GlobalUnlock(memory);
}
