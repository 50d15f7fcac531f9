// A short number that tells bytes apart.
#pragma once

#include <cstdint>
#include <span>

// The CRC-32 of the bytes as zip and PNG files have it (ITU-T V.42). `before`: that of the bytes in front of these.
uint32_t Crc32(std::span<const uint8_t> bytes, uint32_t before = 0);
