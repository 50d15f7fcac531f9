#include "platform/checksum.h"

#include <array>

namespace {

constexpr uint32_t kPolynomial = 0xEDB88320;  // that of V.42, its bits turned round

constexpr std::array<uint32_t, 256> MakeTable() {
    std::array<uint32_t, 256> table = {};
    for (uint32_t byte = 0; byte < table.size(); ++byte) {
        uint32_t rest = byte;
        for (int bit = 0; bit < 8; ++bit) rest = rest & 1 ? rest >> 1 ^ kPolynomial : rest >> 1;
        table[byte] = rest;
    }
    return table;
}

constexpr std::array<uint32_t, 256> kTable = MakeTable();

}  // namespace

uint32_t Crc32(std::span<const uint8_t> bytes, uint32_t before) {
    uint32_t sum = ~before;
    for (uint8_t byte : bytes) sum = sum >> 8 ^ kTable[(sum ^ byte) & 255];
    return ~sum;
}
