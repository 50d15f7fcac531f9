// Blocks that a document plays the same without, for those who do not want them.
#pragma once

#include <cstdint>
#include <span>

#include "gif/block_list.h"

// Kinds of blocks that may be taken out, with the words for them.
struct StrippedKind {
    const char* name;
    uint16_t kind;
};
constexpr StrippedKind kStrippedKinds[] = {{"comments", kCommentBlock},
                                           {"applications", kApplicationBlock},
                                           {"names", kBlockNamesBlock},
                                           {"texts", kPlainTextBlock},
                                           {"unknown", kUnknownBlock}};

// Takes the blocks of these kinds out. What counts repeats stays, whatever its kind. Returns how many went.
uint32_t StripBlocks(std::span<const uint16_t> kinds, BlockList* list);
