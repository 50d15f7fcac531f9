// What a block says, field by field, as texts for people and scripts.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gif/application_data.h"

struct BlockValue {
    const char* field;  // the same names for all blocks of a kind, in the same order
    std::string value;  // in UTF-8
};

// The fields that the descriptor holds: by the names and in the words that `zephyr set` takes where it sets them, and
// `flags` for those bits that no field stands for.
std::vector<BlockValue> GetBlockValues(const Block& block);

// Whether the block is of a kind that holds a text for people: `text`. Other bytes are its `data`.
bool HasBlockText(const Block& block);

// Copies the bytes of a block's text or data, as GetBlockData does, all of those that its file has; none for kinds that
// have neither. False when memory runs out.
[[nodiscard]] bool GetBlockBytes(const Block& block, BlockData* bytes);

// How many colours the block has of its own; 0 for none.
int CountOwnColours(const Block& block);

// The CRC-32 of the picture's pixels, row by row from the top, an index in a byte each (a colour in three). Nothing for
// a block without pixels, or when they can't be reached.
std::optional<uint32_t> SumOfPixels(const Block& block);
