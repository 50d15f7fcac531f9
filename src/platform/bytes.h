// Little-endian numbers in byte buffers, as GIF files hold them.
#pragma once

#include <cstdint>

inline uint16_t GetWord(const uint8_t* from) {
    return static_cast<uint16_t>(from[0] | from[1] << 8);
}

inline void PutWord(uint8_t* to, unsigned value) {
    to[0] = static_cast<uint8_t>(value);
    to[1] = static_cast<uint8_t>(value >> 8);
}
