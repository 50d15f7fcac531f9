// Text between Windows-1252, in which documents hold it, and UTF-8, in which the world outside does.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The five bytes without a character in Windows-1252 stand for the control characters of the same number.
std::string Utf8FromWindows1252(std::string_view text);

// Characters without a place in Windows-1252, and bytes that are no UTF-8, become "?".
std::string Windows1252FromUtf8(std::string_view text);

// The same into memory of the caller's; null only counts. Returns the number of bytes, at most those of `text`. Throws
// nothing.
size_t Windows1252FromUtf8(std::string_view text, char* to) noexcept;

// Whether `text` is UTF-8 of nothing but characters that Windows-1252 has.
bool FitsWindows1252(std::string_view text);
