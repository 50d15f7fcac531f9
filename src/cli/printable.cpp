#include "cli/printable.h"

#include <cstdint>

#include "cli/json.h"

std::optional<unsigned> LeadingControl(std::string_view text) {
    if (text.empty()) return {};
    auto first = static_cast<uint8_t>(text[0]);
    if (first < 0x20 || first == 0x7F) return first;
    if (first != 0xC2 || text.size() < 2) return {};
    auto second = static_cast<uint8_t>(text[1]);
    if (second < 0x80 || second > 0x9F) return {};
    return second;
}

std::string Printable(std::string_view text) {
    std::string printable;
    while (!text.empty()) {
        auto control = LeadingControl(text);
        if (control)
            printable += "\\x" + HexOf(static_cast<uint8_t>(*control));
        else
            printable += text[0];
        text.remove_prefix(control && *control > 0x7F ? 2 : 1);
    }
    return printable;
}
