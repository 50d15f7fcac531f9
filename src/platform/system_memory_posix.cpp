#include <malloc.h>

#include <cstdlib>

#include "platform/system_memory.h"

namespace {

// Frames come and go by the megabyte. Handing their pages back to the system after every document makes the next
// one pay for fresh pages, which costs more than decoding into them; so the heap keeps them.
struct HeapKeepsPages {
    HeapKeepsPages() noexcept {
        mallopt(M_MMAP_THRESHOLD, 32 << 20);  // the most that the C library accepts
        mallopt(M_TRIM_THRESHOLD, 256 << 20);
    }
} const heapKeepsPages;

}  // namespace

SystemMemory::SystemMemory(uint64_t bytes)
    : block_(calloc(1, bytes ? static_cast<size_t>(bytes) : 1)), bytes_(static_cast<size_t>(bytes)) {}

SystemMemory::~SystemMemory() {
    free(block_);
}

size_t SystemMemory::Size() const {
    return bytes_;
}

void* SystemMemory::Lock() {
    return block_;
}

void SystemMemory::Unlock() {}
