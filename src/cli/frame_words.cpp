#include "cli/frame_words.h"

#include <algorithm>

#include "editing/selection.h"

namespace {

constexpr size_t kMostPlaces = 99;

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

}  // namespace

std::string ParseFrameSelection(const std::string& text, uint32_t count, std::vector<uint32_t>* frames) {
    Selection selection;
    std::string wrong = selection.Parse(text);
    if (wrong.empty()) *frames = selection.FindFrameNumbers(count, &wrong);
    std::ranges::sort(*frames);
    return wrong;
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
