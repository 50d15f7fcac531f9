// The bytes that a file starts with, as a mark of its kind.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

constexpr std::string_view kPngSignature = "\x89PNG\r\n\x1A\n";

inline bool StartsWith(std::span<const uint8_t> bytes, std::string_view signature) {
    return bytes.size() >= signature.size() && memcmp(bytes.data(), signature.data(), signature.size()) == 0;
}
