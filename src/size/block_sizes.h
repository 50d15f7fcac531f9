// What each block of a document costs in bytes, and what for.
#pragma once

#include <cstdint>
#include <vector>

#include "gif/block_list.h"

// Bytes of one block; of several, their sums.
struct BlockSizes {
    uint64_t palette = 0;   // the colour table
    uint64_t pixels = 0;    // the codes of an image
    uint64_t data = 0;      // texts, and what belongs to other applications: an XMP packet without its ending
    uint64_t overhead = 0;  // introducers, descriptors, code sizes, lengths of sub-blocks, terminators
    uint64_t stray = 0;     // bytes before the block that start none; not counted as its own

    uint64_t Own() const { return palette + pixels + data + overhead; }
    BlockSizes& operator+=(const BlockSizes& other);
};

// Measures a block as WriteWholeGif writes it; `isFollowed`: something stands behind it. False when memory runs out or
// the block can't be written.
[[nodiscard]] bool MeasureBlock(const Block& block, bool isFollowed, BlockSizes* sizes);

struct DocumentSizes {
    std::vector<BlockSizes> blocks;  // one for each of the document's
    uint64_t before = 0;             // what stands before the signature
    uint64_t after = 0;              // what stands behind the last block: the trailer, if any, and whatever else

    BlockSizes Sum() const;
    uint64_t Total() const;  // of the file
};

// Measures a whole document, written without names: a block that nobody changed by the bytes that its
// file had, any other by those that it is encoded in. False when memory runs out or a block can't be written. May throw
// std::bad_alloc.
[[nodiscard]] bool MeasureDocument(const BlockList& list, DocumentSizes* sizes);
