// New forms of a document, made beside it so that nothing is half done.
#pragma once

#include <map>
#include <span>
#include <vector>

#include "gif/block_list.h"

// Makes `*made` a document of the blocks of `list` whose numbers `order` holds, in that order, with all else that
// `list` has. A block that comes twice leaves the bytes that start no block to its first copy. False, with `*made` of
// no use, when memory runs out.
[[nodiscard]] bool TakeBlocks(const BlockList& list, std::span<const uint32_t> order, BlockList* made);

// Blocks to be put into a document in place of others, or in front of them.
class ListDraft {
public:
    // `list` must stay as it is until Make.
    explicit ListDraft(const BlockList& list) : list_(list) {}

    // An edited copy for the block `index`: encoded from now on when its content differs. False when memory runs out.
    [[nodiscard]] bool Replace(uint32_t index, Block edited);
    // Several come in the order in which they were given.
    void InsertBefore(uint32_t index, const Block& block) { inserted_[index].push_back(block); }

    // Makes `*made`, which may be the list itself, the new document. A document of the first GIF version that gets its
    // first extensions becomes one of the second. False, with `*made` unchanged, when memory runs out.
    [[nodiscard]] bool Make(BlockList* made) const;

private:
    const BlockList& list_;
    std::map<uint32_t, Block> replaced_;
    std::map<uint32_t, std::vector<Block>> inserted_;
};
