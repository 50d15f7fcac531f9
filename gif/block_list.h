// The document: an ordered list of blocks that mirrors the GIF file, the header first.
#pragma once

#include <cstdint>
#include <vector>

#include "gif/block.h"
#include "platform/window_handle.h"

constexpr uint32_t kBlockListStep = 64;  // records by which the capacity grows

struct BlockList {
    MemoryHandle blocks = nullptr;  // array of Block
    uint32_t capacity = 0;          // records that the array counts as holding
    uint32_t count = 0;             // records in use
    uint16_t flags = 0;             // cleared at creation, without further use
};

// Makes `list` an empty list with room for 64 blocks; what it held before is not released. False when memory runs out.
[[nodiscard]] bool CreateBlockList(BlockList* list);

// Releases every block and the list's own memory and zeroes the list. A zeroed list is allowed.
void DestroyBlockList(BlockList* list);

// A list that is destroyed at the end of its scope; zeroed at first.
struct OwnedBlockList : BlockList {
    OwnedBlockList() = default;
    ~OwnedBlockList() { DestroyBlockList(this); }
    OwnedBlockList(const OwnedBlockList&) = delete;
    OwnedBlockList& operator=(const OwnedBlockList&) = delete;
};

// Copies the record `index` out; the copy only borrows the block's handles. False when there is no such record.
bool GetBlock(const BlockList& list, Block* block, uint32_t index);

// Copies the record over record `index`, which must exist. Handles of the old record are not released.
bool PutBlock(BlockList* list, const Block& block, uint32_t index);

// Adds the record at the end and makes `list` its owner. False, with the list unchanged, when memory runs out.
[[nodiscard]] bool AppendBlock(BlockList* list, Block* block);

// Inserts a block right after the selected one (after the header when `*selection` is 0 or less) and selects it.
// The block is `ready`, whose handles the list takes over, or, when that is null, a new default block of `kind`; for an
// image it is read from the file at `path`. False, with nothing changed, when that fails; the user has been told then,
// but for an image that could not be read or was not wanted.
bool InsertBlock(WindowHandle owner, BlockList* list, int* selection, uint16_t kind, const Block* ready,
                 const char* path);

// Deletes the selected block and releases it. `*selection` stays, or becomes the last block when it was deleted.
// False when the block can't be read or is the header, which the user is told.
bool DeleteBlock(WindowHandle owner, BlockList* list, int* selection);

// Moves all blocks of `from` into `list`, in front of its block `index` (the end when there is none), in one pass.
// False, with both lists unchanged, when memory runs out.
[[nodiscard]] bool InsertBlocks(BlockList* list, uint32_t index, BlockList* from);

// Deletes and releases the blocks with these indexes, ascending and each once, in one pass. False, with the list
// unchanged, when it can't be accessed or one of them is the header or not there.
[[nodiscard]] bool DeleteBlocks(BlockList* list, const std::vector<uint32_t>& indexes);

// Index of the first block of `kind`, or -1.
int FindBlock(const BlockList& list, uint16_t kind);

inline int FindHeader(const BlockList& list) {
    return FindBlock(list, kHeaderBlock);
}

inline bool HasLoopBlock(const BlockList& list) {
    return FindBlock(list, kLoopBlock) >= 0;
}

// Copies the palette of the first header that has one into `palette` (256 entries, or null for none) and returns its
// bit depth (1 to 8), or 0 when there is none.
int FindGlobalPalette(const BlockList& list, RgbTriple* palette);

// Sets each block's `position` to its index. False when the list can't be accessed.
bool RenumberBlocks(BlockList* list);

// Calls visit(Block&, index) for every record in place, until it returns false. Records may be changed, not moved:
// the list must not grow or shrink meanwhile. False when the list can't be accessed or `visit` stopped it.
template <typename Visit>
bool ForEachBlock(const BlockList& list, Visit visit) {
    MemoryLock lock(list.blocks);
    if (!lock) return list.count == 0;
    auto* blocks = lock.As<Block>();
    for (uint32_t i = 0; i < list.count; ++i)
        if (!visit(blocks[i], i)) return false;
    return true;
}
