#include "cli/json.h"

#include <algorithm>
#include <cstdio>

#include "cli/printable.h"
#include "platform/text_encoding.h"

namespace {
constexpr char kNoCharacter[] = "\\ufffd";
constexpr char kDigits[] = "0123456789abcdef";

// How many bytes the character has with which `text` begins; 0 when it begins with none.
size_t LeadingCharacter(std::string_view text) {
    Utf8Check check;
    for (size_t bytes = 0; bytes < text.size() && bytes < 4;) {
        check.Add(static_cast<uint8_t>(text[bytes++]));
        if (check.Holds()) return bytes;
    }
    return 0;
}

}  // namespace

std::string HexOf(uint8_t byte) {
    return {kDigits[byte >> 4], kDigits[byte & 15]};
}

std::string JsonText(std::string_view text) {
    std::string json = "\"";
    while (!text.empty()) {
        const size_t bytes = LeadingCharacter(text);
        if (auto control = LeadingControl(text)) {
            json += "\\u00" + HexOf(static_cast<uint8_t>(*control));
        } else if (bytes == 0) {
            json += kNoCharacter;
        } else {
            if (text[0] == '"' || text[0] == '\\') json += '\\';
            json += text.substr(0, bytes);
        }
        text.remove_prefix(std::max<size_t>(bytes, 1));
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
