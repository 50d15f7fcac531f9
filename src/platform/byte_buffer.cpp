#include "platform/byte_buffer.h"

#include <algorithm>
#include <cstring>

#include "platform/memory.h"

namespace {
constexpr size_t kLeastRoom = 4096;
}

bool ByteBuffer::Append(const void* bytes, size_t count) {
    if (count == 0) return true;
    if (count > SIZE_MAX / 4 - used_ || (count > room_ - used_ && !GrowTo(used_ + count))) return false;
    memcpy(bytes_.get() + used_, bytes, count);
    used_ += count;
    return true;
}

bool ByteBuffer::GrowTo(size_t bytes) {
    const size_t room = std::max({bytes, 2 * room_, kLeastRoom});
    std::unique_ptr<uint8_t[]> larger = AllocateScratch(room);
    if (!larger) return false;
    if (used_ > 0) memcpy(larger.get(), bytes_.get(), used_);
    bytes_ = std::move(larger);
    room_ = room;
    return true;
}
