// A document opened by a command.
#pragma once

#include <string>

#include "gif/gif_reader.h"

// The blocks of one file, released at the end of the scope.
struct Document {
    // Reads the file; what was read before a failure stays in `list`. A failure is reported on standard error, as is a
    // file that goes on behind the point where the reader stopped.
    ReadResult Open(const std::string& path);

    OwnedBlockList list;
};

// Fetches the block that `text` (a decimal number) stands for, which borrows its handles from `list`, and its index.
// False, with the reason on standard error, when there is none.
bool FindBlock(const BlockList& list, const std::string& path, const std::string& text, Block* block, uint32_t* index);
