#include "size/pixel_choices.h"

#include <bit>
#include <cstring>

namespace {

// The highest bit of every byte that is not 0.
uint64_t NonZeroBytes(uint64_t bytes) {
    constexpr uint64_t kLow = 0x7F7F7F7F7F7F7F7F;
    return (((bytes & kLow) + kLow) | bytes) & ~kLow;
}

uint64_t EightBytes(const uint8_t* at) {
    uint64_t bytes;
    memcpy(&bytes, at, sizeof bytes);
    return bytes;
}

}  // namespace

size_t FreePixels::Common(size_t at, const uint8_t* indices, size_t most) const {
    const uint8_t *own = own_ + at, *cleared = cleared_ + at;
    size_t same = 0;
    for (; same + 8 <= most; same += 8) {
        const uint64_t written = EightBytes(indices + same);
        const uint64_t differs =
            NonZeroBytes(written ^ EightBytes(own + same)) & NonZeroBytes(written ^ EightBytes(cleared + same));
        // Little-endian: the lowest bit belongs to the first byte.
        if (differs) return same + static_cast<size_t>(std::countr_zero(differs)) / 8;
    }
    while (same < most && (indices[same] == own[same] || indices[same] == cleared[same])) ++same;
    return same;
}
