// Movable, zero-filled memory blocks as values, as document data is kept in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "platform/shared.h"
#include "platform/system_memory.h"

// A block of memory, or none. Copies share it and the last one releases it, so nobody frees and nothing leaks. Memory
// that two handles reach is never written: WriteLock gives a handle that is not alone a copy of its own first.
class MemoryHandle {
public:
    MemoryHandle() = default;
    MemoryHandle(std::nullptr_t) {}

    explicit operator bool() const { return static_cast<bool>(memory_); }
    bool IsShared() const { return memory_.IsShared(); }
    // Whether both are the same block (not: equal bytes).
    bool operator==(const MemoryHandle& other) const { return memory_ == other.memory_; }
    // The same for all copies and for no other block; null for none.
    const void* Id() const { return memory_.Get(); }

private:
    friend MemoryHandle AllocateMemory(uint64_t bytes);
    friend size_t MemorySize(const MemoryHandle& memory);
    friend class MemoryLock;

    Shared<SystemMemory> memory_;
};

// Allocates `bytes` bytes, all zero (0 bytes is allowed and gives a valid handle). None when they can't be had.
[[nodiscard]] MemoryHandle AllocateMemory(uint64_t bytes);

// Size of the block in bytes: at least what was asked for (the system may round up); 0 for none.
size_t MemorySize(const MemoryHandle& memory);

// Fixes a block in place for the length of a scope, to be read. Empty when it can't be locked, and for no block.
class MemoryLock {
public:
    explicit MemoryLock(MemoryHandle memory);
    ~MemoryLock();
    MemoryLock(const MemoryLock&) = delete;
    MemoryLock& operator=(const MemoryLock&) = delete;

    explicit operator bool() const { return address_ != nullptr; }
    // The block's first byte, seen as a T.
    template <typename T>
    const T* As() const {
        return static_cast<const T*>(address_);
    }
    const uint8_t* Bytes() const { return As<uint8_t>(); }

protected:
    MemoryHandle memory_;  // keeps the block, whatever becomes of the caller's handle meanwhile
    void* address_;
};

// The same, to be written. A handle that shares its block gets a copy of its own first; the lock is empty when there is
// no memory for that. A lock shares too: of two write locks on one handle at a time the second writes to a copy.
class WriteLock : private MemoryLock {
public:
    explicit WriteLock(MemoryHandle* memory);
    using MemoryLock::operator bool;
    template <typename T>
    T* As() const {
        return static_cast<T*>(address_);
    }
    uint8_t* Bytes() const { return As<uint8_t>(); }
};

bool ScratchMayBeHad();  // false when a test wants memory to be exhausted

// Working memory for the length of one call: `bytes` bytes of unknown content, or null when they can't be had.
[[nodiscard]] std::unique_ptr<uint8_t[]> AllocateScratch(uint64_t bytes);

// The same for `count` numbers, all 0.
template <typename T>
[[nodiscard]] std::unique_ptr<T[]> AllocateScratchArray(uint64_t count) {
    if (!ScratchMayBeHad() || count > SIZE_MAX / 2 / sizeof(T)) return nullptr;
    return std::unique_ptr<T[]>(new (std::nothrow) T[static_cast<size_t>(count)]());
}

// The same for one object that is too large for the stack; its constructor must not throw.
template <typename T>
[[nodiscard]] std::unique_ptr<T> AllocateScratchObject() {
    return std::unique_ptr<T>(ScratchMayBeHad() ? new (std::nothrow) T : nullptr);
}
