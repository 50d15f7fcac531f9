#include "platform/memory.h"

#include <cstring>

#include "platform/faults.h"

namespace {

// The handle itself, alone with its block: a copy when it was not. None when there is no memory for one.
MemoryHandle MakeOwn(MemoryHandle* memory) {
    if (!memory->IsShared()) return *memory;
    size_t bytes = MemorySize(*memory);
    MemoryHandle own = AllocateMemory(bytes);
    MemoryLock from(*memory);
    WriteLock to(&own);
    if (!from || !to) return nullptr;
    memcpy(to.Bytes(), from.Bytes(), bytes);
    return *memory = own;
}

}  // namespace

MemoryHandle AllocateMemory(uint64_t bytes) {
    MemoryHandle made;
    if (FaultDue(faults.allocationsUntilFailure) || bytes > SIZE_MAX / 2) return made;
    made.memory_ = Shared<SystemMemory>::Make(bytes);
    if (made.memory_ && !made.memory_->Exists()) made.memory_ = {};
    return made;
}

size_t MemorySize(const MemoryHandle& memory) {
    return memory.memory_ ? memory.memory_->Size() : 0;
}

MemoryLock::MemoryLock(MemoryHandle memory) : memory_(std::move(memory)), address_(nullptr) {
    if (memory_ && !FaultDue(faults.locksUntilFailure)) address_ = memory_.memory_->Lock();
}

MemoryLock::~MemoryLock() {
    if (address_) memory_.memory_->Unlock();
}

WriteLock::WriteLock(MemoryHandle* memory) : MemoryLock(MakeOwn(memory)) {}

bool ScratchMayBeHad() {
    return !FaultDue(faults.allocationsUntilFailure);
}

std::unique_ptr<uint8_t[]> AllocateScratch(uint64_t bytes) {
    if (!ScratchMayBeHad() || bytes > SIZE_MAX / 2) return nullptr;
    return std::unique_ptr<uint8_t[]>(new (std::nothrow) uint8_t[static_cast<size_t>(bytes)]);
}
