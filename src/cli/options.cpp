#include "cli/options.h"

#include <algorithm>
#include <charconv>

namespace {

bool IsOneOf(const std::string& option, const Options::Names& known) {
    return std::any_of(known.begin(), known.end(), [&](const char* name) { return option == name; });
}

}  // namespace

Options::Options(const Words& words, const Names& flags, const Names& values) {
    for (size_t i = 0; i < words.size() && error_.empty(); ++i) {
        const std::string& word = words[i];
        if (isEnded_ || word.size() < 2 || word[0] != '-') {
            operands_.push_back(word);
            continue;
        }
        if (word == "--") {
            isEnded_ = true;
            beforeEnd_ = operands_.size();
            continue;
        }
        size_t equals = word.find('=');
        bool hasValue = equals != std::string::npos;
        Given given = {word.substr(0, equals), hasValue ? word.substr(equals + 1) : ""};
        bool isFlag = given.option == "--classic" || IsOneOf(given.option, flags);
        if (!isFlag && !IsOneOf(given.option, values))
            error_ = "unknown option " + given.option;
        else if (isFlag && hasValue)
            error_ = "option " + given.option + " takes no value";
        else if (!isFlag && !hasValue && i + 1 == words.size())
            error_ = "option " + given.option + " needs a value";
        else if (!isFlag && !hasValue)
            given.value = words[++i];
        given_.push_back(given);
    }
}

bool Options::Has(const char* option) const {
    return Value(option) != nullptr;
}

Options Options::Without(const char* option) const {
    Options others = *this;
    std::erase_if(others.given_, [option](const Given& given) { return given.option == option; });
    return others;
}

const std::string* Options::Value(const char* option) const {
    auto found = std::find_if(given_.rbegin(), given_.rend(), [&](const Given& g) { return g.option == option; });
    return found == given_.rend() ? nullptr : &found->value;
}

bool ParseNumber(const std::string& text, unsigned most, unsigned* number) {
    const char* end = text.data() + text.size();
    auto [stopped, error] = std::from_chars(text.data(), end, *number);
    return error == std::errc() && stopped == end && *number <= most;
}
