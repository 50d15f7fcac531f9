// What differs between two documents, block by block.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gif/block_list.h"

// One field that is not the same on both sides.
struct FieldChange {
    std::string field;          // as in block_values.h, or: name, text, data, palette, pixels, stray
    std::string before, after;  // in UTF-8; of what is counted how much there is: "16 colours", "8 x 6", "none"
    uint64_t differing = 0;     // colours, pixels or bytes, where both sides have as many
    uint64_t total = 0;         // that is, so many; 0 where nothing was counted
};

// A block that is on one side alone, stands elsewhere among the others, or is not the same.
struct BlockDifference {
    static constexpr int64_t kNone = -1;

    int64_t before = kNone;  // its index in the old document; kNone: it was added
    int64_t after = kNone;   // its index in the new one; kNone: it was taken out
    bool isMoved = false;
    bool isEncodedDifferently = false;         // other bytes in the file say the same
    std::vector<FieldChange> fields;           // what was changed
    uint32_t bytesBefore = 0, bytesAfter = 0;  // in the files; 0 for a side that does not know
};

struct DocumentDifferences {
    std::vector<BlockDifference> blocks;  // in the order of the new document, what was taken out where it was
    std::vector<FieldChange> around;      // bytes of the files that belong to no block: before, after

    bool AreNone() const { return blocks.empty() && around.empty(); }
};

// Compares the documents. Of two that were read whole there are no differences if and only if their files have the same
// bytes. The work grows with the bytes of both, and with the blocks that differ. False when memory runs out.
[[nodiscard]] bool CompareDocuments(const BlockList& old, const BlockList& fresh, DocumentDifferences* differences);
