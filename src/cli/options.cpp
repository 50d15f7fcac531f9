#include "cli/options.h"

#include <algorithm>
#include <charconv>

namespace {

bool IsOneOf(const std::string& option, std::initializer_list<const char*> known) {
    return std::any_of(known.begin(), known.end(), [&](const char* name) { return option == name; });
}

}  // namespace

Options::Options(const Words& words, std::initializer_list<const char*> flags,
                 std::initializer_list<const char*> values) {
    bool optionsEnded = false;
    for (size_t i = 0; i < words.size() && error_.empty(); ++i) {
        const std::string& word = words[i];
        if (optionsEnded || word.size() < 2 || word[0] != '-') {
            operands_.push_back(word);
            continue;
        }
        if (word == "--") {
            optionsEnded = true;
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

const std::string* Options::Value(const char* option) const {
    auto found = std::find_if(given_.rbegin(), given_.rend(), [&](const Given& g) { return g.option == option; });
    return found == given_.rend() ? nullptr : &found->value;
}

bool ParseIndex(const std::string& text, uint32_t* index, std::string* error) {
    if (ParseNumber(text, UINT32_MAX, index)) return true;
    *error = "give the number of a block, not " + text;
    return false;
}

bool ParseNumber(const std::string& text, unsigned most, unsigned* number) {
    const char* end = text.data() + text.size();
    auto [stopped, error] = std::from_chars(text.data(), end, *number);
    return error == std::errc() && stopped == end && *number <= most;
}
