#include "gif/block_list.h"

#include <algorithm>
#include <cstring>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"

namespace {

// Makes room for more records. The capacity grows in small steps; the memory below grows by half, so that appending
// costs the same however long the list is.
bool MakeRoom(BlockList* list, uint32_t more) {
    uint64_t wanted = uint64_t{list->count} + more;
    if (wanted < list->capacity) return true;
    uint64_t steps = (wanted - list->capacity) / kBlockListStep + 1;
    uint64_t capacity = list->capacity + steps * kBlockListStep;
    uint64_t needed = capacity * sizeof(Block);
    if (capacity > UINT32_MAX) return false;
    if (needed > MemorySize(list->blocks)) {
        MemoryHandle grown = ResizeMemory(list->blocks, needed + needed / 2);
        if (!grown) grown = ResizeMemory(list->blocks, needed);
        if (!grown) return false;
        list->blocks = grown;
    }
    list->capacity = static_cast<uint32_t>(capacity);
    return true;
}

void RenumberFrom(Block* blocks, uint32_t index, uint32_t count) {
    for (; index < count; ++index) blocks[index].position = static_cast<uint16_t>(index);
}

bool Refuse(WindowHandle owner, unsigned message) {
    ShowMessage(owner, LoadStr(message));
    return false;
}

}  // namespace

bool CreateBlockList(BlockList* list) {
    *list = {};
    list->blocks = AllocateMemory(uint64_t{kBlockListStep} * sizeof(Block));
    if (!list->blocks) return false;
    list->capacity = kBlockListStep;
    return true;
}

void DestroyBlockList(BlockList* list) {
    ForEachBlock(*list, [](Block& block, uint32_t) {
        FreeBlock(&block);
        return true;
    });
    FreeMemory(list->blocks);
    *list = {};
}

bool GetBlock(const BlockList& list, Block* block, uint32_t index) {
    if (index >= list.count) return false;
    MemoryLock lock(list.blocks);
    if (!lock) return false;
    *block = lock.As<Block>()[index];
    return true;
}

bool PutBlock(BlockList* list, const Block& block, uint32_t index) {
    if (index >= list->count) return false;
    MemoryLock lock(list->blocks);
    if (!lock) return false;
    auto* blocks = lock.As<Block>();
    blocks[index] = block;
    return true;
}

bool AppendBlock(BlockList* list, Block* block) {
    if (!MakeRoom(list, 1)) return false;
    block->owner = list;
    ++list->count;
    if (PutBlock(list, *block, list->count - 1)) return true;
    --list->count;
    return false;
}

bool InsertBlock(WindowHandle owner, BlockList* list, int* selection, uint16_t kind, const Block* ready,
                 const char* path) {
    if (!MakeRoom(list, 1)) return Refuse(owner, IDS_OUT_OF_MEMORY);
    Block block;
    if (ready)
        block = *ready;
    else if (!MakeDefaultBlock(owner, list, &block, kind, nullptr, path))
        return false;
    block.owner = list;

    uint32_t index = std::min(*selection <= 0 ? 1u : static_cast<uint32_t>(*selection) + 1, list->count);
    MemoryLock lock(list->blocks);
    if (!lock) {
        if (!ready) FreeBlock(&block);
        return Refuse(owner, IDS_BLOCK_ACCESS);
    }
    auto* blocks = lock.As<Block>();
    std::copy_backward(blocks + index, blocks + list->count, blocks + list->count + 1);
    blocks[index] = block;
    RenumberFrom(blocks, index, ++list->count);
    *selection = static_cast<int>(index);
    return true;
}

bool DeleteBlock(WindowHandle owner, BlockList* list, int* selection) {
    Block block;
    if (*selection < 0 || !GetBlock(*list, &block, static_cast<uint32_t>(*selection)))
        return Refuse(owner, IDS_BLOCK_ACCESS);
    if (block.kind == kHeaderBlock) return Refuse(owner, IDS_HEADER_FIXED);
    MemoryLock lock(list->blocks);
    if (!lock) return Refuse(owner, IDS_BLOCK_ACCESS);
    auto* blocks = lock.As<Block>();
    auto index = static_cast<uint32_t>(*selection);
    std::copy(blocks + index + 1, blocks + list->count, blocks + index);
    RenumberFrom(blocks, index, --list->count);
    if (index >= list->count) *selection = static_cast<int>(list->count) - 1;
    FreeBlock(&block);
    return true;
}

bool InsertBlocks(BlockList* list, uint32_t index, BlockList* from) {
    if (from->count == 0) return true;
    if (!MakeRoom(list, from->count)) return false;
    MemoryLock lock(list->blocks), fromLock(from->blocks);
    if (!lock || !fromLock) return false;
    auto* blocks = lock.As<Block>();
    auto* moved = fromLock.As<Block>();
    index = std::min(index, list->count);
    std::copy_backward(blocks + index, blocks + list->count, blocks + list->count + from->count);
    std::copy(moved, moved + from->count, blocks + index);
    for (uint32_t i = index; i < index + from->count; ++i) blocks[i].owner = list;
    list->count += from->count;
    from->count = 0;
    RenumberFrom(blocks, index, list->count);
    return true;
}

bool DeleteBlocks(BlockList* list, const std::vector<uint32_t>& indexes) {
    MemoryLock lock(list->blocks);
    if (!lock) return false;
    auto* blocks = lock.As<Block>();
    auto isDeletable = [&](uint32_t index) { return index < list->count && blocks[index].kind != kHeaderBlock; };
    if (!std::all_of(indexes.begin(), indexes.end(), isDeletable)) return false;
    if (indexes.empty()) return true;
    auto next = indexes.begin();
    uint32_t kept = indexes.front();
    for (uint32_t i = kept; i < list->count; ++i) {
        if (next != indexes.end() && *next == i) {
            FreeBlock(&blocks[i]);
            ++next;
        } else {
            blocks[kept++] = blocks[i];
        }
    }
    list->count = kept;
    RenumberFrom(blocks, indexes.front(), list->count);
    return true;
}

int FindBlock(const BlockList& list, uint16_t kind) {
    int found = -1;
    ForEachBlock(list, [&](const Block& block, uint32_t index) {
        if (block.kind == kind) found = static_cast<int>(index);
        return found < 0;
    });
    return found;
}

int FindGlobalPalette(const BlockList& list, RgbTriple* palette) {
    int depth = 0;
    ForEachBlock(list, [&](const Block& block, uint32_t) {
        uint8_t packed = GetHeaderFields(block).packed;
        if (block.kind != kHeaderBlock || !(packed & kHasPalette)) return true;
        depth = DepthOfPacked(packed);
        if (palette) memcpy(palette, block.palette, kPaletteBytes);
        return false;
    });
    return depth;
}

bool RenumberBlocks(BlockList* list) {
    return ForEachBlock(*list, [](Block& block, uint32_t index) {
        block.position = static_cast<uint16_t>(index);
        return true;
    });
}
