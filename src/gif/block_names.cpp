#include "gif/block_names.h"

#include <string_view>

#include "platform/bytes.h"

namespace {

constexpr uint32_t kCountBytes = 2;
constexpr uint32_t kEntryHeadBytes = 14;

// One entry: a head of name length (with its NUL), kind and position, two bytes each, and 8 more bytes; then the name.
struct NameEntry {
    uint16_t kind, position;
    std::string_view name;
};

// Takes the entry at `*at` and moves behind it; false when it does not fit in what is left.
bool TakeEntry(const uint8_t** at, const uint8_t* end, NameEntry* entry) {
    auto left = static_cast<size_t>(end - *at);
    if (left < kEntryHeadBytes) return false;
    size_t nameBytes = GetWord(*at);
    if (left - kEntryHeadBytes < nameBytes) return false;
    entry->kind = GetWord(*at + 2);
    entry->position = GetWord(*at + 4);
    std::string_view name(reinterpret_cast<const char*>(*at + kEntryHeadBytes), nameBytes);
    entry->name = name.substr(0, name.find('\0'));
    *at += kEntryHeadBytes + nameBytes;
    return true;
}

// Names come before any others are given: a block that has one already was named by an earlier entry.
bool NameBlock(BlockList* list, const NameEntry& entry) {
    if (entry.position >= list->count) return true;
    Block& block = list->blocks[entry.position];
    return block.kind != entry.kind || block.name || SetBlockName(entry.name, &block);
}

}  // namespace

bool ApplyBlockNames(BlockList* list) {
    int found = FindBlock(*list, kBlockNamesBlock);
    if (found < 0) return true;
    const Block& names = list->blocks[static_cast<uint32_t>(found)];
    MemoryLock lock(names.data);
    if (!lock) return false;
    if (names.dataLength < kCountBytes) return true;
    const uint8_t* at = lock.Bytes() + kCountBytes;
    const uint8_t* end = lock.Bytes() + names.dataLength;
    NameEntry entry;
    for (int left = GetWord(lock.Bytes()); left > 0 && TakeEntry(&at, end, &entry); --left)
        if (!NameBlock(list, entry)) return false;
    return true;
}
