// LZW codes as bits in data sub-blocks.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>

#include "platform/file.h"
#include "platform/memory.h"

// A sub-block is closed before the first code that finds so many whole bytes in it, although there would be room for
// 255: sub-blocks are 251 or 252 bytes long. Files have always been cut so.
constexpr int kQuirkSubBlockBytes = 251;

// Packs codes, least significant bit first, into sub-blocks.
class CodeWriter {
public:
    // Where the next code goes. The encoder keeps this in local variables for speed and hands it back at the end.
    struct Place {
        uint64_t bits;        // those that do not fill a byte yet, lowest first
        unsigned count;       // how many: 0 to 7
        uint8_t* next;        // where the next whole byte goes
        uint8_t* blockStart;  // the first byte of the open sub-block; its length byte lies before it
    };

    // Begins with the minimum code size byte. False when there is no memory.
    [[nodiscard]] bool Start(File* file, int minimumCodeSize, Place* at);

    // Appends a code of `width` bits (1 to 12). `code` must fit.
    void Put(Place* at, unsigned code, unsigned width) {
        if (at->next - at->blockStart >= kQuirkSubBlockBytes)
            at->next = at->blockStart = CloseBlock(at->blockStart, at->next);
        at->bits |= uint64_t{code} << at->count;
        at->count += width;
        // Little-endian, as the stream is; bytes beyond the count are written again.
        memcpy(at->next, &at->bits, sizeof at->bits);
        at->next += at->count >> 3;
        at->bits >>= at->count & ~7u;
        at->count &= 7;
    }

    // Writes what is left, and the empty sub-block that ends the chain. False when any write has failed.
    [[nodiscard]] bool Finish(Place at);

private:
    static constexpr int kBufferBytes = 32 * 1024;
    static constexpr int kRoomForBlock = 300;

    // Closes the sub-block that ends before `end`; returns the start of the next one.
    uint8_t* CloseBlock(uint8_t* start, uint8_t* end);

    File* file_ = nullptr;
    std::unique_ptr<uint8_t[]> buffer_;
};
