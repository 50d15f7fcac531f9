#include "gif/block.h"

#include <algorithm>
#include <cstring>

#include "platform/text_encoding.h"

namespace {

constexpr uint32_t kTextSlack = 16;  // room behind a text: its terminating NUL and then some
constexpr int kMostLineBytes = 260;

// A new block of memory that holds the bytes and a NUL; none when memory runs out.
MemoryHandle CopyOfText(const void* text, size_t length) {
    MemoryHandle memory = AllocateMemory(uint64_t{length} + kTextSlack);
    WriteLock lock(&memory);
    if (!lock) return nullptr;
    if (length) memcpy(lock.Bytes(), text, length);
    return memory;
}

bool TakeName(const MemoryHandle& name, Block* block) {
    if (name) block->name = name;
    return static_cast<bool>(name);
}

}  // namespace

void FreeBlock(Block* block) {
    *block = {};
}

bool SetBlockName(std::string_view text, Block* block) {
    return TakeName(CopyOfText(text.data(), text.size()), block);
}

bool SetBlockNameFromUtf8(std::string_view utf8, Block* block) {
    MemoryHandle name = AllocateMemory(uint64_t{Windows1252FromUtf8(utf8, nullptr)} + kTextSlack);
    WriteLock lock(&name);
    if (!lock) return false;
    Windows1252FromUtf8(utf8, lock.As<char>());
    return TakeName(name, block);
}

std::optional<std::string> GetBlockName(const Block& block) {
    MemoryLock lock(block.name);
    if (!lock) return std::nullopt;
    size_t length = strnlen(lock.As<char>(), MemorySize(block.name));
    if (length >= kNameBytes) return std::nullopt;
    return std::string(lock.As<char>(), length);
}

bool SetBlockText(Block* block, const void* text, uint32_t length) {
    MemoryHandle data = CopyOfText(text, length);
    if (!data) return false;
    block->data = data;
    block->dataLength = length;
    return true;
}

std::string GetBlockText(const Block& block) {
    MemoryLock lock(block.data);
    return lock ? std::string(lock.As<char>(), std::min<size_t>(block.dataLength, MemorySize(block.data))) : "";
}

std::string GetBlockTextLine(const Block& block, int maximum) {
    std::string line;
    MemoryLock lock(block.data);
    if (!lock) return line;
    const uint8_t* from = lock.Bytes();
    const uint8_t* end = from + block.dataLength;
    while (from < end && *from <= 32) ++from;
    auto most = static_cast<size_t>(std::clamp(maximum, 0, kMostLineBytes));
    for (; from < end && line.size() < most && *from != 13; ++from) line += *from < 32 ? ' ' : static_cast<char>(*from);
    return line;
}
