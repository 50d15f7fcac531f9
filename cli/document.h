// A document opened by a command.
#pragma once

#include <string>

#include "cli/options.h"
#include "gif/gif_reader.h"

// The blocks of one file, released at the end of the scope.
struct Document {
    // Reads the file; what was read before a failure stays in `list`. A failure is reported on standard error, as is a
    // load that ended before the trailer, which with the option "--strict" is a failure too. Returns whether the
    // command may go on.
    bool Open(const std::string& path, const Options& options);

    OwnedBlockList list;
    ReadResult result = kReadFailed;
    ReadReport report = {};

private:
    void Read(const std::string& path, bool strict);
    void RefuseBlankImage(const std::string& path);
};

// Where the load of a document ended, in a few words: "trailer" when all of it was read.
std::string WhereLoadEnded(const Document& document);

// Fetches block number `index`, which borrows its handles from `list`. False, with the reason on standard error, when
// there is none.
bool FindBlock(const BlockList& list, const std::string& path, uint32_t index, Block* block);
