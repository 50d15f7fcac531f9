// LZW codes as bits in data sub-blocks.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/file.h"
#include "platform/memory.h"

// Packs codes, least significant bit first, into sub-blocks. A sub-block is closed before the first code that finds 251
// or more whole bytes in it, so sub-blocks are 251 or 252 bytes long.
class CodeWriter {
public:
    // Begins with the minimum code size byte. False when there is no memory.
    [[nodiscard]] bool Start(File* file, int minimumCodeSize);

    // Appends a code of `width` bits (1 to 12). `code` must fit.
    void Put(unsigned code, unsigned width) {
        if (next_ - blockStart_ >= kBlockBytes) CloseBlock();
        bits_ |= uint64_t{code} << count_;
        count_ += width;
        StoreBits();
        next_ += count_ >> 3;
        bits_ >>= count_ & ~7u;
        count_ &= 7;
    }

    // Writes what is left, and the empty sub-block that ends the chain. False when any write has failed.
    [[nodiscard]] bool Finish();

private:
    static constexpr int kBlockBytes = 251;
    static constexpr int kBufferBytes = 32 * 1024;
    static constexpr int kRoomForBlock = 300;

    void StoreBits() {
        for (int i = 0; i < 4; ++i) next_[i] = static_cast<uint8_t>(bits_ >> 8 * i);
    }
    void CloseBlock();
    void StartBlock(uint8_t* lengthByte);

    File* file_ = nullptr;
    std::unique_ptr<uint8_t[]> buffer_;
    uint8_t* blockStart_ = nullptr;  // the first byte of the open sub-block; its length byte lies before it
    uint8_t* next_ = nullptr;        // where the next whole byte goes
    uint64_t bits_ = 0;              // bits that do not fill a byte yet
    unsigned count_ = 0;
};
