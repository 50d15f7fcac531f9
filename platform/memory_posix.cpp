#include <malloc.h>

#include <cstdlib>
#include <cstring>

#include "platform/faults.h"
#include "platform/memory.h"

namespace {

struct alignas(16) Header {
    uint64_t bytes;  // without this header
};

// Frames come and go by the megabyte. Handing their pages back to the system after every document makes the next
// one pay for fresh pages, which costs more than decoding into them; so the heap keeps them.
struct HeapKeepsPages {
    HeapKeepsPages() noexcept {
        mallopt(M_MMAP_THRESHOLD, 32 << 20);  // the most that the C library accepts
        mallopt(M_TRIM_THRESHOLD, 256 << 20);
    }
} const heapKeepsPages;

Header* HeaderOf(MemoryHandle memory) {
    return static_cast<Header*>(memory);
}

}  // namespace

MemoryHandle AllocateMemory(uint64_t bytes) {
    if (FaultDue(faults.allocationsUntilFailure) || bytes > SIZE_MAX - sizeof(Header)) return nullptr;
    auto* header = static_cast<Header*>(calloc(1, sizeof(Header) + static_cast<size_t>(bytes)));
    if (header) header->bytes = bytes;
    return header;
}

MemoryHandle ResizeMemory(MemoryHandle memory, uint64_t bytes) {
    if (!memory || FaultDue(faults.allocationsUntilFailure) || bytes > SIZE_MAX - sizeof(Header)) return nullptr;
    uint64_t oldBytes = HeaderOf(memory)->bytes;
    auto* header = static_cast<Header*>(realloc(memory, sizeof(Header) + static_cast<size_t>(bytes)));
    if (!header) return nullptr;
    if (bytes > oldBytes) memset(reinterpret_cast<uint8_t*>(header + 1) + oldBytes, 0, bytes - oldBytes);
    header->bytes = bytes;
    return header;
}

void FreeMemory(MemoryHandle memory) {
    free(memory);
}

size_t MemorySize(MemoryHandle memory) {
    return memory ? static_cast<size_t>(HeaderOf(memory)->bytes) : 0;
}

void* LockMemory(MemoryHandle memory) {
    if (!memory || FaultDue(faults.locksUntilFailure)) return nullptr;
    return HeaderOf(memory) + 1;
}

void UnlockMemory(MemoryHandle) {}
