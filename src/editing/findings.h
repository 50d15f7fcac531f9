// What will surprise in players.
#pragma once

#include <string>
#include <vector>

#include "animation/animation.h"
#include "gif/gif_reader.h"
#include "platform/work_watch.h"

// The command that mends something, for a document in a file: "set" of "3 delay=10".
struct Mending {
    const char* command = nullptr;  // null: there is none
    std::string words;              // behind the names of the files
};

struct Finding {
    const char* check;  // which of the checks found it, in a word
    int64_t block;      // where, or kWholeFile
    std::string what;   // what happens where, in a sentence without a full stop
    Mending mend;
};

constexpr int64_t kWholeFile = -1;

// How the sentences call the block of that number.
using BlockNaming = std::string (*)(uint32_t index);

// Looks for all of it in a document that was read with that report, in the order of the checks. False when memory runs
// out, or the watch does not want it to go on.
[[nodiscard]] bool FindSurprises(const Animation& animation, const ReadReport& report, BlockNaming naming,
                                 const WorkWatch& watch, std::vector<Finding>* findings);
