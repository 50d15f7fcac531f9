#include "cli/frame_words.h"

#include <string_view>

#include "cli/options.h"

namespace {

constexpr std::string_view kLast = "last";
constexpr size_t kMostPlaces = 99;

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

// A frame's number: digits, "last", or "last-" and how many before it.
bool ParseFrame(std::string_view text, uint32_t count, uint32_t* frame) {
    unsigned number = 0;
    const bool fromEnd = text.starts_with(kLast);
    if (fromEnd) {
        text.remove_prefix(kLast.size());
        if (!text.empty() && (text[0] != '-' || !ParseNumber(std::string(text.substr(1)), UINT32_MAX, &number)))
            return false;
    } else if (!ParseNumber(std::string(text), UINT32_MAX, &number)) {
        return false;
    }
    if (number >= count) return false;
    *frame = fromEnd ? count - 1 - number : number;
    return true;
}

// Where a range's two ends part: at the hyphen that does not belong to "last-2".
size_t PartingOf(std::string_view part) {
    size_t hyphen = part.find('-');
    if (hyphen == kLast.size() && part.starts_with(kLast)) {
        const size_t next = part.find('-', hyphen + 1);
        // "last-last" and "last-2-last" part somewhere, "last-2" does not.
        if (next != std::string_view::npos || hyphen + 1 >= part.size() || IsDigit(part[hyphen + 1]))
            return part.substr(hyphen + 1).starts_with(kLast) ? hyphen : next;
    }
    return hyphen;
}

bool ParseRange(std::string_view part, uint32_t count, uint32_t* first, uint32_t* last) {
    const size_t parting = PartingOf(part);
    if (!ParseFrame(part.substr(0, parting), count, first)) return false;
    *last = *first;
    return parting == std::string_view::npos || (ParseFrame(part.substr(parting + 1), count, last) && *first <= *last);
}

}  // namespace

std::string ParseFrameSelection(const std::string& text, uint32_t count, std::vector<uint32_t>* frames) {
    std::vector<bool> chosen(count);
    std::string_view rest = text;
    for (bool more = true; more;) {
        const size_t comma = rest.find(',');
        const std::string_view part = rest.substr(0, comma);
        uint32_t first = 0, last = 0;
        if (!ParseRange(part, count, &first, &last))
            return "no such frames: " + std::string(part) + "; they are numbered 0 to " +
                   std::to_string(int64_t{count} - 1);
        for (uint32_t frame = first; frame <= last; ++frame) chosen[frame] = true;
        more = comma != std::string_view::npos;
        if (more) rest.remove_prefix(comma + 1);
    }
    for (uint32_t frame = 0; frame < count; ++frame)
        if (chosen[frame]) frames->push_back(frame);
    return "";
}

std::string NumberedName::Parse(const std::string& pattern) {
    for (size_t i = 0; i < pattern.size(); ++i) {
        std::string& part = hasNumber_ ? behind_ : before_;
        if (pattern[i] != '%') {
            part += pattern[i];
            continue;
        }
        if (++i < pattern.size() && pattern[i] == '%') {
            part += '%';
            continue;
        }
        size_t places = 0;
        for (; i < pattern.size() && IsDigit(pattern[i]) && places <= kMostPlaces; ++i)
            places = places * 10 + static_cast<size_t>(pattern[i] - '0');
        if (i >= pattern.size() || pattern[i] != 'd' || places > kMostPlaces)
            return "give %d or %03d for the number in " + pattern + ", and %% for a percent sign";
        if (hasNumber_) return "give one number in " + pattern;
        hasNumber_ = true;
        places_ = places;
    }
    return "";
}

std::string NumberedName::For(uint32_t number) const {
    if (!hasNumber_) return before_;
    std::string digits = std::to_string(number);
    if (digits.size() < places_) digits.insert(0, places_ - digits.size(), '0');
    return before_ + digits + behind_;
}
