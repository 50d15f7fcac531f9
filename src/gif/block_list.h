// The document: an ordered list of blocks that mirrors the GIF file, the header first.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "gif/block.h"
#include "gif/manner.h"

constexpr uint32_t kBlockListStep = 64;  // records by which the capacity grows

// A list's `flags`.
constexpr uint16_t kReadWhole = 1;  // its blocks know the bytes they came from
constexpr uint16_t kMadeHere = 2;   // not read from a file: the screen follows the images

// Bytes of a file that belong to no block.
struct FileBytes {
    MemoryHandle memory;  // the whole file
    uint32_t start = 0;
    uint32_t bytes = 0;
};

// A list releases its blocks with itself. Moving one makes the new list the owner of its records.
struct BlockList {
    BlockList() = default;
    BlockList(BlockList&& other) noexcept { *this = std::move(other); }
    BlockList& operator=(BlockList&& other) noexcept;

    std::unique_ptr<Block[]> blocks;  // the records, in a row
    uint32_t capacity = 0;            // records that the array counts as holding
    uint32_t count = 0;               // records in use
    uint16_t flags = 0;               // kReadWhole, kMadeHere
    uint32_t reserved = 0;            // records that there is really room for

    FileBytes before;  // of a list read whole: what the file has before its signature,
    FileBytes after;   // and what it has behind the last block: the trailer, if any, and whatever else

    // NOLINTNEXTLINE(readability-make-member-function-const): the records of a list that is to stay are not to change
    std::span<Block> All() { return {blocks.get(), count}; }
    std::span<const Block> All() const { return {blocks.get(), count}; }
};

// Makes `list` an empty list with room for 64 blocks. False when memory runs out.
[[nodiscard]] bool CreateBlockList(BlockList* list);

// Makes `copy` a list of the same blocks, which share their texts, pixels and colours with those of `list`. False, with
// an empty copy, when memory runs out.
[[nodiscard]] bool CopyBlockList(const BlockList& list, BlockList* copy);

// Makes the list one without blocks and memory, as it was before it was created.
void DestroyBlockList(BlockList* list);

// Copies the record `index` out. False when there is no such record.
bool GetBlock(const BlockList& list, Block* block, uint32_t index);

// Copies the record over record `index`. False when there is no such record.
bool PutBlock(BlockList* list, const Block& block, uint32_t index);

// Adds the record at the end and makes `list` its owner. False, with the list unchanged, when memory runs out.
[[nodiscard]] bool AppendBlock(BlockList* list, Block block);

// Puts the blocks (none of this list's own records), in their order, right after the selected one (after the header
// when `*selection` is 0 or less) and selects the last of them. False, with nothing changed, when memory runs out.
[[nodiscard]] bool InsertBlocks(BlockList* list, int* selection, std::span<const Block> blocks);

// To be called before a list gets an extension. The first version of GIF has none: with its first one a document of
// that version that was read whole becomes one of the second.
void SignForExtensions(BlockList* list);

// Takes out the blocks whose indexes `gone` holds in increasing order, in one pass.
void RemoveBlocks(BlockList* list, std::span<const uint32_t> gone);

// Index of the first block of `kind`, or -1.
int FindBlock(const BlockList& list, uint16_t kind);

// The document's header: its first one, or null.
const Block* FindHeader(const BlockList& list);

// A document's global palette, with its bit depth: 1 to 8, or 0 when there is none.
struct GlobalPalette {
    Palette colours;
    int depth = 0;
};

// That of a HEADER block.
GlobalPalette PaletteOfHeader(const Block& header);

// That of the first header that has one.
GlobalPalette FindGlobalPalette(const BlockList& list);

inline bool HasLoopBlock(const BlockList& list) {
    return FindBlock(list, kLoopBlock) >= 0;
}

// Sets each block's `position` to its index.
void RenumberBlocks(BlockList* list);
