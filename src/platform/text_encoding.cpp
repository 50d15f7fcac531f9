#include "platform/text_encoding.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace {

// Code points of the bytes 0x80 to 0x9F; all others stand for themselves.
constexpr uint16_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

void AppendUtf8(std::string* to, unsigned point) {
    if (point < 0x80) {
        *to += static_cast<char>(point);
    } else if (point < 0x800) {
        *to += static_cast<char>(0xC0 | point >> 6);
        *to += static_cast<char>(0x80 | (point & 0x3F));
    } else {
        *to += static_cast<char>(0xE0 | point >> 12);
        *to += static_cast<char>(0x80 | (point >> 6 & 0x3F));
        *to += static_cast<char>(0x80 | (point & 0x3F));
    }
}

constexpr unsigned kBroken = 0xFFFD;

// Takes one character from the front of `text`; kBroken, with one byte taken, when it is no UTF-8.
unsigned TakeUtf8(std::string_view* text) {
    auto lead = static_cast<uint8_t>(text->front());
    size_t length = lead < 0x80 ? 1 : lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    unsigned point = length <= 1 ? lead : lead & (0x7Fu >> length);
    bool broken = length == 0 || length > text->size();
    for (size_t i = 1; !broken && i < length; ++i) {
        auto next = static_cast<uint8_t>((*text)[i]);
        broken = (next & 0xC0) != 0x80;
        point = point << 6 | (next & 0x3F);
    }
    constexpr unsigned kLeast[] = {0, 0, 0x80, 0x800, 0x10000};  // smaller ones have a shorter form, the only right one
    broken = broken || point < kLeast[length];
    text->remove_prefix(broken ? 1 : length);
    return broken ? kBroken : point;
}

char Byte1252(unsigned point) {
    if (point < 0x80 || (point >= 0xA0 && point <= 0xFF)) return static_cast<char>(point);
    const auto* found = std::find(std::begin(kHighControls), std::end(kHighControls), point);
    return found == std::end(kHighControls) ? '?' : static_cast<char>(0x80 + (found - kHighControls));
}

}  // namespace

std::string Utf8FromWindows1252(std::string_view text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (char c : text) {
        auto byte = static_cast<uint8_t>(c);
        AppendUtf8(&utf8, byte >= 0x80 && byte < 0xA0 ? kHighControls[byte - 0x80] : byte);
    }
    return utf8;
}

void Utf8Check::Begin(uint8_t lead) {
    if (lead < 0x80) return;
    if (lead < 0xC2 || lead > 0xF4) broken_ = true;
    missing_ = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    if (lead == 0xE0) least_ = 0xA0;
    if (lead == 0xED) most_ = 0x9F;
    if (lead == 0xF0) least_ = 0x90;
    if (lead == 0xF4) most_ = 0x8F;
}

void Utf8Check::Add(uint8_t byte) {
    if (missing_ == 0) return Begin(byte);
    if (byte < least_ || byte > most_) broken_ = true;
    --missing_;
    least_ = 0x80;
    most_ = 0xBF;
}

std::string Windows1252FromUtf8(std::string_view text) {
    std::string narrow(text.size(), '\0');
    narrow.resize(Windows1252FromUtf8(text, narrow.data()));
    return narrow;
}

size_t Windows1252FromUtf8(std::string_view text, char* to) noexcept {
    size_t bytes = 0;
    for (; !text.empty(); ++bytes) {
        char byte = Byte1252(TakeUtf8(&text));
        if (to) to[bytes] = byte;
    }
    return bytes;
}

bool FitsWindows1252(std::string_view text) {
    return Utf8FromWindows1252(Windows1252FromUtf8(text)) == text;
}
