// What will surprise in players.
#pragma once

#include <string>
#include <vector>

#include "cli/played_file.h"

struct Finding {
    const char* check;  // which of the checks found it, in a word
    int64_t block;      // where, or kWholeFile
    std::string what;   // what happens where, in a sentence without a full stop
    std::string mend;   // the command that mends it; empty when there is none
};

constexpr int64_t kWholeFile = -1;

// Looks for all of it in the file at `path`, in the order of the checks. False when memory runs out.
[[nodiscard]] bool FindSurprises(const PlayedFile& file, const std::string& path, std::vector<Finding>* findings);
