#include "gif/block_names.h"

#include <algorithm>
#include <cstring>

#include "platform/bytes.h"

namespace {

constexpr uint32_t kCountBytes = 2;
constexpr uint32_t kEntryHeadBytes = 14;

// One entry: a head of name length (with its NUL), kind and position, two bytes each, and 8 more bytes; then the name.
struct Entry {
    uint16_t kind, position;
    const char* name;
    size_t nameBytes;
};

bool FindNamesBlock(const BlockList& list, Block* names) {
    bool found = false;
    ForEachBlock(list, [&](const Block& block, uint32_t) {
        found = block.kind == kBlockNamesBlock;
        if (found) *names = block;
        return !found;
    });
    return found;
}

// Takes the entry at `*at` and moves behind it; false when it does not fit in what is left.
bool TakeEntry(const uint8_t** at, const uint8_t* end, Entry* entry) {
    auto left = static_cast<size_t>(end - *at);
    if (left < kEntryHeadBytes) return false;
    entry->nameBytes = GetWord(*at);
    entry->kind = GetWord(*at + 2);
    entry->position = GetWord(*at + 4);
    entry->name = reinterpret_cast<const char*>(*at + kEntryHeadBytes);
    if (left - kEntryHeadBytes < entry->nameBytes) return false;
    *at += kEntryHeadBytes + entry->nameBytes;
    return true;
}

// Names come before any others are given: a block that has one already was named by an earlier entry.
void NameBlock(BlockList* list, const Entry& entry) {
    Block block;
    if (!GetBlock(*list, &block, entry.position) || block.kind != entry.kind || block.name) return;
    char name[kMaxTextBytes + 1];
    size_t length = strnlen(entry.name, entry.nameBytes);
    memcpy(name, entry.name, length);
    name[length] = 0;
    if (SetBlockName(name, &block) && !PutBlock(list, block, entry.position)) FreeMemory(block.name);
}

}  // namespace

void ApplyBlockNames(BlockList* list) {
    Block names;
    if (!FindNamesBlock(*list, &names)) return;
    MemoryLock lock(names.data);
    if (!lock || names.dataLength < kCountBytes) return;
    const uint8_t* at = lock.Bytes() + kCountBytes;
    const uint8_t* end = lock.Bytes() + names.dataLength;
    Entry entry;
    for (int left = GetWord(lock.Bytes()); left > 0 && TakeEntry(&at, end, &entry); --left) NameBlock(list, entry);
}
