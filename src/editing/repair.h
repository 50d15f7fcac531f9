// Making a clean file of what can be saved of a damaged one.
#pragma once

#include <string>
#include <vector>

#include "gif/gif_reader.h"

// One thing that was done, in a sentence without a full stop.
struct RepairStep {
    int32_t block = -1;  // the number of the block that it concerns in the document as it was read, or -1
    uint16_t kind = kEmptyBlock;
    std::string text;
};

// Repairs a document read whole, as its report tells where that is needed: afterwards it is written as a file without
// any. What is not damaged keeps its bytes, and every image that stays keeps the pixels and colours it was read with.
// Left out are bytes that belong to no block, images of whose pixels nothing is left, together with the control blocks
// before them, and extensions of which nothing of use is left. `steps` tells what was done, in the order of the file.
// False when memory runs out; the document is then repaired in part.
[[nodiscard]] bool RepairDocument(BlockList* list, const ReadReport& report, std::vector<RepairStep>* steps);
