#include "tests/support/failing_new.h"

#include <cstdlib>
#include <new>

FailingNew failingNew;

namespace {

void* Allocate(std::size_t bytes) noexcept {
    if (failingNew.untilFailure != FailingNew::kNever && failingNew.untilFailure-- == 0) return nullptr;
    return malloc(bytes ? bytes : 1);
}

void* AllocateOrThrow(std::size_t bytes) {
    if (void* memory = Allocate(bytes)) return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t bytes) {
    return AllocateOrThrow(bytes);
}
void* operator new[](std::size_t bytes) {
    return AllocateOrThrow(bytes);
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return Allocate(bytes);
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
    return Allocate(bytes);
}
void operator delete(void* memory) noexcept {
    free(memory);
}
void operator delete[](void* memory) noexcept {
    free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    free(memory);
}
