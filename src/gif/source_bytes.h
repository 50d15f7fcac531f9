// The bytes that a block had in the file it was read from, in the whole manner.
#pragma once

#include <cstdint>
#include <span>

#include "gif/block_list.h"

// Gives access to them for the length of a scope.
class SourceLock {
public:
    explicit SourceLock(const Block& block) : lock_(block.aux), source_(block.source) {}

    // False when the bytes can't be reached, and for a block without any.
    explicit operator bool() const { return static_cast<bool>(lock_); }

    // What stood before the block and starts none.
    std::span<const uint8_t> Stray() const { return {lock_.Bytes() + source_.start, source_.stray}; }
    // The block's own: introducer, label, fixed part, palette, sub-blocks. Empty once it was changed.
    std::span<const uint8_t> Own() const { return {lock_.Bytes() + source_.start + source_.stray, source_.bytes}; }

private:
    MemoryLock lock_;
    SourcePlace source_;
};

// Whether the block is written as its file had it.
inline bool HasSource(const Block& block) {
    return block.source.bytes != 0;
}

// Whether both would be encoded alike: equal kind, descriptor, text, pixels and palette (not: names and sources).
bool SameContent(const Block& a, const Block& b);

// To be called by whoever changed the content of a block: from now on it is encoded. The bytes before it stay. An image
// without pixels can't be encoded: its bytes stay, with the place on the screen that it has now. False when memory runs
// out, with the block unchanged.
[[nodiscard]] bool MarkChanged(Block* block);

// Puts the edited copy of block `index` back. When its content differs from the old one it counts as changed, otherwise
// nothing happens, and `*differs` tells which. An image that only moved, and a plain text that keeps its text, keep all
// other bytes: pixels of damaged data and texts too long for a block would not survive being encoded. False, with
// nothing changed, when there is no such block or no memory.
[[nodiscard]] bool StoreEdited(BlockList* list, Block edited, uint32_t index, bool* differs);
