// The check sum of PNG chunks: CRC-32 as ISO 3309 has it (ITU-T V.42), with a table of 256 remainders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// The sum of `bytes`; `before` is that of the bytes in front of them, 0 for none.
uint32_t Crc32(std::span<const uint8_t> bytes, uint32_t before = 0);
