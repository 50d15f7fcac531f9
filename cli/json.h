// Writing JSON, one value after another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// `text` (UTF-8) in double quotes, with what JSON wants escaped.
std::string JsonText(std::string_view text);

// The bytes as lower-case hexadecimal digits in double quotes.
std::string JsonHex(const uint8_t* bytes, size_t count);
