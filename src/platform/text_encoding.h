// Text between Windows-1252, in which documents hold it, and UTF-8, in which the world outside does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// The five bytes without a character in Windows-1252 stand for the control characters of the same number.
std::string Utf8FromWindows1252(std::string_view text);

// Finds out whether bytes that come one by one are UTF-8: in shortest form, without halves of surrogate pairs, and up
// to U+10FFFF.
class Utf8Check {
public:
    void Add(uint8_t byte);
    // For the bytes so far; false also when the last character lacks some of its bytes.
    bool Holds() const { return !broken_ && missing_ == 0; }

private:
    void Begin(uint8_t lead);

    int missing_ = 0;                     // bytes of the character that are still to come
    uint8_t least_ = 0x80, most_ = 0xBF;  // what the next of them may be
    bool broken_ = false;
};

// Characters without a place in Windows-1252, and bytes that are no UTF-8, become "?".
std::string Windows1252FromUtf8(std::string_view text);

// The same into memory of the caller's; null only counts. Returns the number of bytes, at most those of `text`. Throws
// nothing.
size_t Windows1252FromUtf8(std::string_view text, char* to) noexcept;

// Whether `text` is UTF-8 of nothing but characters that Windows-1252 has.
bool FitsWindows1252(std::string_view text);
