#include "gif/block.h"

#include <algorithm>
#include <cstring>

#include "platform/text_encoding.h"

namespace {

constexpr uint32_t kTextSlack = 16;  // room behind a text: its terminating NUL and then some

constexpr int kTextLineBytes = 261;

// A new block of memory that holds the bytes and a NUL; null when memory runs out.
MemoryHandle CopyOfText(const void* text, size_t length) {
    OwnedMemory memory(AllocateMemory(uint64_t{length} + kTextSlack));
    MemoryLock lock(memory.Get());
    if (!lock) return nullptr;
    if (length) memcpy(lock.Bytes(), text, length);
    return memory.Release();
}

bool TakeName(MemoryHandle name, Block* block) {
    if (!name) return false;
    FreeMemory(block->name);
    block->name = name;
    return true;
}

}  // namespace

void FreeBlock(Block* block) {
    FreeMemory(block->data);
    FreeMemory(block->aux);
    FreeMemory(block->name);
    *block = {};
}

bool SetBlockName(std::string_view text, Block* block) {
    return TakeName(CopyOfText(text.data(), text.size()), block);
}

bool SetBlockNameFromUtf8(std::string_view utf8, Block* block) {
    OwnedMemory name(AllocateMemory(uint64_t{Windows1252FromUtf8(utf8, nullptr)} + kTextSlack));
    MemoryLock lock(name.Get());
    if (!lock) return false;
    Windows1252FromUtf8(utf8, lock.As<char>());
    return TakeName(name.Release(), block);
}

bool GetBlockName(char* text, const Block& block) {
    text[0] = 0;
    MemoryLock lock(block.name);
    if (!lock) return false;
    size_t length = strnlen(lock.As<char>(), MemorySize(block.name));
    if (length >= kNameBytes) return false;
    memcpy(text, lock.Bytes(), length);
    text[length] = 0;
    return true;
}

bool SetBlockText(Block* block, const void* text, uint32_t length) {
    MemoryHandle data = CopyOfText(text, length);
    if (!data) return false;
    FreeMemory(block->data);
    block->data = data;
    block->dataLength = length;
    return true;
}

const char* GetBlockTextLine(const Block& block, int maximum) {
    static char line[kTextLineBytes];
    size_t length = 0;
    MemoryLock lock(block.data);
    if (lock) {
        const uint8_t* from = lock.Bytes();
        const uint8_t* end = from + block.dataLength;
        while (from < end && *from <= 32) ++from;
        auto most = static_cast<size_t>(std::clamp(maximum, 0, kTextLineBytes - 1));
        for (; from < end && length < most && *from != 13; ++from)
            line[length++] = *from < 32 ? ' ' : static_cast<char>(*from);
    }
    line[length] = 0;
    return line;
}
