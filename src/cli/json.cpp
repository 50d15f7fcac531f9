#include "cli/json.h"

#include <algorithm>
#include <cstdio>

#include "cli/printable.h"

namespace {
constexpr char kDigits[] = "0123456789abcdef";
}

std::string HexOf(uint8_t byte) {
    return {kDigits[byte >> 4], kDigits[byte & 15]};
}

std::string JsonText(std::string_view text) {
    std::string json = "\"";
    while (!text.empty()) {
        auto control = LeadingControl(text);
        if (control) {
            json += "\\u00" + HexOf(static_cast<uint8_t>(*control));
        } else {
            if (text[0] == '"' || text[0] == '\\') json += '\\';
            json += text[0];
        }
        text.remove_prefix(control && *control > 0x7F ? 2 : 1);
    }
    return json + '"';
}

void PrintJsonHex(std::span<const uint8_t> bytes) {
    constexpr size_t kPiece = 2048;
    char digits[2 * kPiece];
    putchar('"');
    for (; !bytes.empty(); bytes = bytes.subspan(std::min(kPiece, bytes.size()))) {
        char* end = digits;
        for (uint8_t byte : bytes.first(std::min(kPiece, bytes.size()))) {
            *end++ = kDigits[byte >> 4];
            *end++ = kDigits[byte & 15];
        }
        fwrite(digits, 1, static_cast<size_t>(end - digits), stdout);
    }
    putchar('"');
}

std::string JsonHex(const uint8_t* bytes, size_t count) {
    std::string json = "\"";
    json.reserve(2 * count + 2);
    for (size_t i = 0; i < count; ++i) {
        json += kDigits[bytes[i] >> 4];
        json += kDigits[bytes[i] & 15];
    }
    return json + '"';
}
