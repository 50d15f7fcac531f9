// Writing JSON, one value after another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// `text` (UTF-8) in double quotes, with what JSON wants escaped and all other control characters as well. Bytes that
// are no UTF-8, as names of files may have, become U+FFFD, without which nobody could read the rest.
std::string JsonText(std::string_view text);

// The bytes as lower-case hexadecimal digits in double quotes.
std::string JsonHex(const uint8_t* bytes, size_t count);

// Prints the same on standard output, piece by piece: for bytes that may be many.
void PrintJsonHex(std::span<const uint8_t> bytes);

// The two lower-case hexadecimal digits of a byte.
std::string HexOf(uint8_t byte);
