// Taking a command's words apart.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "cli/commands.h"
#include "gif/manner.h"

// The words of one command: options ("--json", "--owner NAME" or "--owner=NAME") may stand anywhere; "--" ends them.
class Options {
public:
    // `flags` are options without a value, `values` those with one; "--classic" is one of every command. Look at Error
    // before anything else.
    Options(const Words& words, std::initializer_list<const char*> flags, std::initializer_list<const char*> values);

    // What is wrong with the words, in one line; empty when they are fine.
    const std::string& Error() const { return error_; }

    bool Has(const char* option) const;
    // The value given last, or null.
    const std::string* Value(const char* option) const;
    const Words& Operands() const { return operands_; }

    // How the documents of this command are kept: whole unless it says --classic.
    Manner DocumentManner() const { return Has("--classic") ? Manner::kClassic : Manner::kWhole; }
    bool IsWhole() const { return DocumentManner() == Manner::kWhole; }

private:
    struct Given {
        std::string option, value;
    };
    std::vector<Given> given_;
    Words operands_;
    std::string error_;
};

// Reads the number of a block. False, with what is wrong in `error`, when `text` is no number.
bool ParseIndex(const std::string& text, uint32_t* index, std::string* error);

// Reads a whole number of 0 to `most`, with nothing behind it. False for anything else.
bool ParseNumber(const std::string& text, unsigned most, unsigned* number);
