// Numbers in byte buffers: little-endian, as GIF files hold them, and big-endian ones of other files.
#pragma once

#include <cstdint>

inline uint16_t GetWord(const uint8_t* from) {
    return static_cast<uint16_t>(from[0] | from[1] << 8);
}

inline uint32_t GetDoubleWord(const uint8_t* from) {
    return GetWord(from) | static_cast<uint32_t>(GetWord(from + 2)) << 16;
}

inline uint16_t GetBigWord(const uint8_t* from) {
    return static_cast<uint16_t>(from[0] << 8 | from[1]);
}

inline uint32_t GetBigDoubleWord(const uint8_t* from) {
    return static_cast<uint32_t>(GetBigWord(from)) << 16 | GetBigWord(from + 2);
}

inline void PutWord(uint8_t* to, unsigned value) {
    to[0] = static_cast<uint8_t>(value);
    to[1] = static_cast<uint8_t>(value >> 8);
}
