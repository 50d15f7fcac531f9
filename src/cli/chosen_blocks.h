// Commands that write blocks of a document to files of their own: FILE SELECTION OUT.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "cli/frame_words.h"
#include "cli/loaded_file.h"
#include "editing/selection.h"

class ChosenBlocks {
public:
    // Takes the three operands apart. Returns what is wrong with them, or an empty text.
    std::string Read(const Words& operands);

    // Opens FILE and calls `write` for each block of SELECTION, in the order of its words, until it returns false:
    // `out` is OUT with the block's number in the place of "%d". Without such a place there must be one block alone,
    // and OUT is taken as it is. Returns the program's exit status; a failure is reported on standard error.
    int WriteEach(const Options& options,
                  const std::function<bool(LoadedFile& file, uint32_t index, const std::string& out)>& write) const;

private:
    std::string OutFor(uint32_t index) const { return name_.HasNumber() ? name_.For(index) : out_; }

    std::string in_, out_;
    Selection blocks_;
    NumberedName name_;
};
