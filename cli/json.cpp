#include "cli/json.h"

namespace {
constexpr char kDigits[] = "0123456789abcdef";
}

std::string JsonText(std::string_view text) {
    std::string json = "\"";
    for (char c : text) {
        auto byte = static_cast<uint8_t>(c);
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (byte < 32) {
            json += "\\u00";
            json += kDigits[byte >> 4];
            json += kDigits[byte & 15];
        } else {
            json += c;
        }
    }
    return json + '"';
}

std::string JsonHex(const uint8_t* bytes, size_t count) {
    std::string json = "\"";
    for (size_t i = 0; i < count; ++i) {
        json += kDigits[bytes[i] >> 4];
        json += kDigits[bytes[i] & 15];
    }
    return json + '"';
}
