// Taking a command's words apart.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "gif/manner.h"

constexpr char kStandardStream[] = "-";  // in the place of a file: standard input or output

// The words of one command: options ("--json", "--owner NAME" or "--owner=NAME") may stand anywhere; "--" ends them.
class Options {
public:
    using Names = std::vector<const char*>;

    // `flags` are options without a value, `values` those with one; "--classic" is one of every command. Look at Error
    // before anything else.
    Options(const Words& words, const Names& flags, const Names& values);

    // What is wrong with the words, in one line; empty when they are fine.
    const std::string& Error() const { return error_; }

    bool Has(const char* option) const;
    // The same words but for that option.
    Options Without(const char* option) const;
    // The value given last, or null.
    const std::string* Value(const char* option) const;
    const Words& Operands() const { return operands_; }
    // How many of the operands stand in front of "--"; all of them without it.
    size_t OperandsBeforeEnd() const { return isEnded_ ? beforeEnd_ : operands_.size(); }
    bool IsEnded() const { return isEnded_; }

    // How the documents of this command are kept: whole unless it says --classic.
    Manner DocumentManner() const { return Has("--classic") ? Manner::kClassic : Manner::kWhole; }
    bool IsWhole() const { return DocumentManner() == Manner::kWhole; }

private:
    struct Given {
        std::string option, value;
    };
    std::vector<Given> given_;
    Words operands_;
    bool isEnded_ = false;
    size_t beforeEnd_ = 0;
    std::string error_;
};

// Reads a whole number of 0 to `most`, with nothing behind it. False for anything else.
bool ParseNumber(const std::string& text, unsigned most, unsigned* number);
