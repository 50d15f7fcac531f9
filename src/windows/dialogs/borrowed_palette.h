// Colours for the buttons of an editor whose block stores none.
#pragma once

#include "editing/block_queries.h"

// Lends the block a palette (BorrowPalette) and clears it again at the end of the scope.
class BorrowedPalette {
public:
    explicit BorrowedPalette(Block* block) : block_(block), found_(block->owner && BorrowPalette(block)) {}
    ~BorrowedPalette() { block_->palette.Clear(); }
    BorrowedPalette(const BorrowedPalette&) = delete;
    BorrowedPalette& operator=(const BorrowedPalette&) = delete;

    explicit operator bool() const { return found_; }

private:
    Block* block_;
    bool found_;
};

inline uint32_t BorrowedColourCount(const Block& block) {
    return 1u << block.paletteBits;
}
