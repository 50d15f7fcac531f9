// The data of APPLICATION-DEFINED and UNKNOWN TYPE blocks, as the application that they belong to knows it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "gif/block.h"

constexpr size_t kMostBlockData = size_t{1} << 30;

struct BlockData {
    std::unique_ptr<uint8_t[]> bytes;
    size_t count = 0;

    std::span<const uint8_t> All() const { return {bytes.get(), count}; }
};

// Whether the block is of a kind that has such data.
bool HasBlockData(const Block& block);

// Copies the data of such a block, or of a text or names block, into `data`: of one that came from a file read whole
// all of it as it stands there, otherwise the text that the block keeps. Sub-blocks are joined; an XMP packet comes as
// it is, without the bytes that end it in a GIF file. False when memory runs out.
[[nodiscard]] bool GetBlockData(const Block& block, BlockData* data);

// Gives such a block this data, of at most kMostBlockData bytes: new source bytes, which a whole document writes, and
// the text that they are read as. An XMP packet goes in as it is, with its ending, wherever readers can step over it;
// all other data goes in as sub-blocks. A block that has this very data already stays as it is. False, with the block
// unchanged, when memory runs out.
[[nodiscard]] bool SetBlockData(Block* block, std::span<const uint8_t> data);
