#include "gif/block_list.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "gif/descriptor.h"
#include "gif/source_bytes.h"
#include "platform/faults.h"

namespace {

// An array of `records` empty blocks; null when memory runs out.
std::unique_ptr<Block[]> AllocateBlocks(uint64_t records) {
    if (!ScratchMayBeHad() || records > SIZE_MAX / 2 / sizeof(Block)) return nullptr;
    return std::unique_ptr<Block[]>(new (std::nothrow) Block[static_cast<size_t>(records)]);
}

// Makes room for `wanted` records. The array grows by half, so that appending costs the same however long the list is.
bool Reserve(BlockList* list, uint64_t wanted) {
    if (wanted <= list->reserved) return true;
    uint64_t room = std::min<uint64_t>(wanted + wanted / 2, UINT32_MAX);
    std::unique_ptr<Block[]> grown = AllocateBlocks(room);
    if (!grown) grown = AllocateBlocks(room = wanted);
    if (!grown) return false;
    std::ranges::move(list->All(), grown.get());
    list->blocks = std::move(grown);
    list->reserved = static_cast<uint32_t>(room);
    return true;
}

// Makes room for `more` records. The capacity grows in small steps as soon as only one place is left.
bool MakeRoom(BlockList* list, size_t more) {
    uint64_t capacity = list->capacity;
    while (list->count + uint64_t{more} >= capacity) capacity += kBlockListStep;
    if (capacity > UINT32_MAX || !Reserve(list, capacity)) return false;
    list->capacity = static_cast<uint32_t>(capacity);
    return true;
}

bool IsExtension(const Block& block) {
    return block.kind >= kControlBlock && block.kind <= kUnknownBlock;
}

void RenumberFrom(BlockList* list, uint32_t index) {
    for (; index < list->count; ++index) list->blocks[index].position = static_cast<uint16_t>(index);
}

}  // namespace

BlockList& BlockList::operator=(BlockList&& other) noexcept {
    if (this == &other) return *this;
    blocks = std::move(other.blocks);
    capacity = std::exchange(other.capacity, 0);
    count = std::exchange(other.count, 0);
    flags = std::exchange(other.flags, uint16_t{0});
    reserved = std::exchange(other.reserved, 0);
    before = std::exchange(other.before, {});
    after = std::exchange(other.after, {});
    for (Block& block : All()) block.owner = this;
    return *this;
}

bool CreateBlockList(BlockList* list) {
    DestroyBlockList(list);
    list->blocks = AllocateBlocks(kBlockListStep);
    if (!list->blocks) return false;
    list->capacity = list->reserved = kBlockListStep;
    return true;
}

bool CopyBlockList(const BlockList& list, BlockList* copy) {
    if (!CreateBlockList(copy) || !MakeRoom(copy, list.count)) {
        DestroyBlockList(copy);
        return false;
    }
    std::ranges::copy(list.All(), copy->blocks.get());
    copy->count = list.count;
    for (Block& block : copy->All()) block.owner = copy;
    copy->flags = list.flags;
    copy->before = list.before;
    copy->after = list.after;
    return true;
}

void DestroyBlockList(BlockList* list) {
    *list = BlockList();
}

bool GetBlock(const BlockList& list, Block* block, uint32_t index) {
    if (index >= list.count) return false;
    *block = list.blocks[index];
    return true;
}

bool PutBlock(BlockList* list, const Block& block, uint32_t index) {
    if (index >= list->count) return false;
    list->blocks[index] = block;
    return true;
}

bool AppendBlock(BlockList* list, Block block) {
    if (!MakeRoom(list, 1)) return false;
    block.owner = list;
    list->blocks[list->count++] = std::move(block);
    return true;
}

bool InsertBlocks(BlockList* list, int* selection, std::span<const Block> blocks) {
    if (!MakeRoom(list, blocks.size())) return false;
    if (std::ranges::any_of(blocks, IsExtension)) SignForExtensions(list);
    auto more = static_cast<uint32_t>(blocks.size());
    uint32_t index = std::min(*selection <= 0 ? 1u : static_cast<uint32_t>(*selection) + 1, list->count);
    Block* place = &list->blocks[index];
    std::move_backward(place, &list->blocks[list->count], &list->blocks[list->count + more]);
    std::ranges::copy(blocks, place);
    for (Block& block : std::span(place, more)) block.owner = list;
    list->count += more;
    RenumberFrom(list, index);
    *selection = static_cast<int>(index + more) - 1;
    return true;
}

void RemoveBlocks(BlockList* list, std::span<const uint32_t> gone) {
    if (gone.empty()) return;
    const uint32_t first = gone.front();
    uint32_t kept = first;
    for (uint32_t index = first; index < list->count; ++index) {
        if (!gone.empty() && gone.front() == index)
            gone = gone.subspan(1);
        else
            list->blocks[kept++] = std::move(list->blocks[index]);
    }
    for (uint32_t index = kept; index < list->count; ++index) FreeBlock(&list->blocks[index]);
    list->count = kept;
    RenumberFrom(list, first);
}

bool HasExtensions(const BlockList& list) {
    return std::ranges::any_of(list.All(), IsExtension);
}

void SignAsSecondVersion(BlockList* list) {
    constexpr char kFirstVersion[] = "GIF87a";
    Block* header = &list->blocks[0];
    if (header->kind != kHeaderBlock || memcmp(header->descriptor, kFirstVersion, kSignatureBytes) != 0) return;
    memcpy(header->descriptor, kSignature, kSignatureBytes);
    (void)MarkChanged(header);  // a header can always be encoded
}

void SignForExtensions(BlockList* list) {
    if ((list->flags & kReadWhole) && !HasExtensions(*list)) SignAsSecondVersion(list);
}

int FindBlock(const BlockList& list, uint16_t kind) {
    auto found = std::ranges::find(list.All(), kind, &Block::kind);
    return found == list.All().end() ? -1 : static_cast<int>(found - list.All().begin());
}

const Block* FindHeader(const BlockList& list) {
    int index = FindBlock(list, kHeaderBlock);
    return index < 0 ? nullptr : &list.blocks[static_cast<uint32_t>(index)];
}

GlobalPalette PaletteOfHeader(const Block& header) {
    uint8_t packed = GetHeaderFields(header).packed;
    if (!(packed & kHasPalette)) return {};
    return {header.palette, DepthOfPacked(packed)};
}

GlobalPalette FindGlobalPalette(const BlockList& list) {
    for (const Block& block : list.All()) {
        GlobalPalette palette = block.kind == kHeaderBlock ? PaletteOfHeader(block) : GlobalPalette();
        if (palette.depth != 0) return palette;
    }
    return {};
}

void RenumberBlocks(BlockList* list) {
    RenumberFrom(list, 0);
}
