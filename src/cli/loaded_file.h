// The file that a command works on.
#pragma once

#include <string>

#include "cli/options.h"
#include "gif/gif_reader.h"

struct LoadedFile {
    // Reads the file; what was read before a failure stays in `list`. A failure is reported on standard error, as is a
    // load that ended before the trailer, which with the option "--strict" is a failure too. Returns whether the
    // command may go on.
    bool Open(const std::string& path, const Options& options);

    // Block number `index`; null, with the reason on standard error, when there is none.
    Block* At(uint32_t index);

    // The same for a block that has to be an image.
    Block* ImageAt(uint32_t index);

    // Where the load ended, in a few words: "trailer" when all of it was read.
    std::string WhereLoadEnded() const;

    BlockList list;
    ReadResult result = kReadFailed;
    ReadReport report = {};

private:
    void Read(bool strict);
    void RefuseBlankImage();

    std::string path_;
};
