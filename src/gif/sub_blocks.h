// Chains of data sub-blocks: a length byte and so many bytes, until a length of 0.
#pragma once

#include <cstddef>
#include <cstdint>

#include "gif/manner.h"
#include "platform/file.h"

// Moves behind the end of the chain at which (or between whose sub-blocks) `file` stands, or behind the end of the
// file.
void SkipSubBlocks(File& file);

// The sub-blocks of one image's data as a stream of bits, least significant first. Sub-blocks are joined in a small
// buffer, so that the decoder sees long runs of bytes. One cut off by the end of the file counts in the whole manner
// only.
class CodeStream {
public:
    // cppcheck-suppress uninitMemberVar ; Fetch fills the buffer before anybody reads it
    CodeStream(File& file, Manner manner) : file_(file), keepsCut_(manner == Manner::kWhole) {}

    // Where the decoder reads. It keeps this in local variables for speed and hands it back to fetch more.
    struct Bits {
        uint64_t bits = 0;  // the next bits, lowest first; those above `count` are not to be used yet
        unsigned count = 0;
        const uint8_t* next = nullptr;  // bytes not yet in `bits`
        const uint8_t* end = nullptr;
    };

    // The same place with at least 8 more bytes to read, or with all that are left in the chain.
    Bits Fetch(Bits at);

private:
    static constexpr size_t kBufferBytes = 4096;

    File& file_;
    bool keepsCut_;
    bool ended_ = false;
    uint8_t buffer_[kBufferBytes];
};

// Takes the next code of `width` bits (1 to 12). False when the chain holds no whole code any more.
inline bool TakeCode(CodeStream& stream, CodeStream::Bits* at, unsigned width, unsigned* code) {
    while (at->count < width) {
        if (at->next == at->end) {
            *at = stream.Fetch(*at);
            if (at->next == at->end) return false;
        }
        at->bits |= uint64_t{*at->next++} << at->count;
        at->count += 8;
    }
    *code = static_cast<unsigned>(at->bits & ((1u << width) - 1));
    at->bits >>= width;
    at->count -= width;
    return true;
}
