// What memory.cpp needs of the operating system. Nobody else includes this.
#pragma once

#include <cstddef>
#include <cstdint>

// A block of movable, zero-filled memory, released at the end of its life. On Windows a global memory object, elsewhere
// a plain heap block with the same contract.
class SystemMemory {
public:
    explicit SystemMemory(uint64_t bytes);  // has no block when the memory can't be had
    ~SystemMemory();
    SystemMemory(const SystemMemory&) = delete;
    SystemMemory& operator=(const SystemMemory&) = delete;

    bool Exists() const { return block_ != nullptr; }
    size_t Size() const;  // at least what was asked for
    void* Lock();         // null when it can't be locked; every lock is undone by one Unlock
    void Unlock();

private:
    void* block_;
    size_t bytes_ = 0;
};
