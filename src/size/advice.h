// Edits that make a file smaller, with their exact prices.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gif/gif_reader.h"

// One edit, alone. Those that have to do with the same blocks do not add up.
struct Advice {
    uint64_t gain = 0;   // bytes by which the written file gets smaller, 1 at least
    std::string what;    // what is done, in a few words: "drop the interlacing of image:3"
    std::string loses;   // what is lost with it that players of the animation do not show; empty for nothing
    std::string verb;    // of the command that does it, "set" or "delete",
    std::string blocks;  // the selection that this is given,
    std::string value;   // and the field with its value, of "set" alone
};

// Tries all edits of the document, read whole as `report` says, after which it looks in browsers as it did. The largest
// gains come first. Damaged images are left alone. False when memory runs out; may throw std::bad_alloc.
[[nodiscard]] bool FindAdvice(const BlockList& list, const ReadReport& report, std::vector<Advice>* advice);
