// Movable, zero-filled memory blocks behind opaque handles, as document data is kept in.
// On Windows these are global memory objects; elsewhere plain heap blocks with the same contract.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

using MemoryHandle = void*;  // null means "none"

// Allocates `bytes` bytes, all zero (0 bytes is allowed and gives a valid handle).
// Returns a handle that the caller owns, or null when the memory can't be had.
[[nodiscard]] MemoryHandle AllocateMemory(uint64_t bytes);

// Changes the size of `memory`, keeping its content; new bytes are zero. The block must not be locked.
// Returns the handle to use from now on, or null on failure, when `memory` stays valid and unchanged.
[[nodiscard]] MemoryHandle ResizeMemory(MemoryHandle memory, uint64_t bytes);

// Releases the block. Null is allowed and ignored.
void FreeMemory(MemoryHandle memory);

// Size of the block in bytes: at least what was asked for (the system may round up); 0 for null.
size_t MemorySize(MemoryHandle memory);

// Fixes the block in place and returns its address, or null when it can't be locked (null handle included).
// Every successful lock is undone by one UnlockMemory; use MemoryLock below rather than the pair.
void* LockMemory(MemoryHandle memory);
void UnlockMemory(MemoryHandle memory);

// Locks a block for the length of a scope.
class MemoryLock {
public:
    explicit MemoryLock(MemoryHandle memory) : memory_(memory), address_(LockMemory(memory)) {}
    ~MemoryLock() {
        if (address_) UnlockMemory(memory_);
    }
    MemoryLock(const MemoryLock&) = delete;
    MemoryLock& operator=(const MemoryLock&) = delete;

    explicit operator bool() const { return address_ != nullptr; }
    // The block's first byte, seen as a T; null when the lock failed.
    template <typename T>
    T* As() const {
        return static_cast<T*>(address_);
    }
    uint8_t* Bytes() const { return static_cast<uint8_t*>(address_); }

private:
    MemoryHandle memory_;
    void* address_;
};

// Owns a block until it is handed over with Release.
class OwnedMemory {
public:
    explicit OwnedMemory(MemoryHandle memory = nullptr) : memory_(memory) {}
    ~OwnedMemory() { FreeMemory(memory_); }
    OwnedMemory(const OwnedMemory&) = delete;
    OwnedMemory& operator=(const OwnedMemory&) = delete;

    explicit operator bool() const { return memory_ != nullptr; }
    MemoryHandle Get() const { return memory_; }
    MemoryHandle Release() {
        MemoryHandle memory = memory_;
        memory_ = nullptr;
        return memory;
    }
    void Reset(MemoryHandle memory) {
        if (memory != memory_) FreeMemory(memory_);
        memory_ = memory;
    }

private:
    MemoryHandle memory_;
};

// Working memory for the length of one call: `bytes` bytes of unknown content, or null when they can't be had.
[[nodiscard]] std::unique_ptr<uint8_t[]> AllocateScratch(uint64_t bytes);

// The same for one object that is too large for the stack; its constructor must not throw.
bool ScratchMayBeHad();  // false when a test wants memory to be exhausted
template <typename T>
[[nodiscard]] std::unique_ptr<T> AllocateScratchObject() {
    return std::unique_ptr<T>(ScratchMayBeHad() ? new (std::nothrow) T : nullptr);
}
