#include "gif/linear_decoder.h"

#include <cstring>

#include "gif/sub_blocks.h"

namespace {

struct Entry {
    uint32_t at;  // where the string stands, counted from the literals
    uint32_t length;
};

uint64_t Load64(const uint8_t* from) {
    uint64_t value;
    memcpy(&value, from, sizeof value);  // the machines we run on are little-endian, as the codes are
    return value;
}

constexpr unsigned kStep = 16;  // bytes that one copy moves at least

// The two places may overlap: a string may be copied right behind itself.
inline void CopyStep(uint8_t* to, const uint8_t* from) {
    uint8_t step[kStep];
    memcpy(step, from, kStep);
    memcpy(to, step, kStep);
}

// As TakeCode, but takes in up to 8 bytes at once as long as there are so many.
inline bool TakeCodeFast(CodeStream& stream, CodeStream::Bits* at, unsigned width, unsigned* code) {
    if (at->count < kMostCodeBits) {
        if (at->end - at->next < 8) *at = stream.Fetch(*at);
        if (at->end - at->next >= 8) {
            at->bits |= Load64(at->next) << at->count;
            at->next += (63 - at->count) >> 3;
            at->count |= 56;
        }
    }
    if (at->count < width) return TakeCode(stream, at, width, code);
    *code = static_cast<unsigned>(at->bits) & ((1u << width) - 1);
    at->bits >>= width;
    at->count -= width;
    return true;
}

}  // namespace

bool LinearDecoder::Prepare(uint64_t room) {
    memory_ = AllocateScratch(kLiterals + room + kSlack);
    room_ = room;
    if (memory_)
        for (unsigned i = 0; i < kLiterals; ++i) memory_[i] = static_cast<uint8_t>(i);
    return memory_ != nullptr;
}

// In one piece: with the state of the dictionary in a type of its own the compiler gives up registers (5 to 10 %).
LinearDecoder::Outcome LinearDecoder::Decode(File& file, int codeSize, Manner manner) {
    const unsigned clearCode = 1u << codeSize;
    const unsigned startWidth = static_cast<unsigned>(codeSize) + 1;
    uint8_t* const base = memory_.get();
    uint8_t* const first = base + kLiterals;
    uint8_t* const limit = first + room_;
    uint8_t* out = first;
    CodeStream stream(file, manner);
    CodeStream::Bits in;
    Entry table[kMostCodes + 1];  // one more to write to when it is full
    for (unsigned i = 0; i < clearCode; ++i) table[i] = {i, 1};

    unsigned width = startWidth;
    unsigned top = 1u << width;
    unsigned next = clearCode + 2;
    Entry previous = {0, 0};  // where the last string was written; length 0 right after a clear
    Outcome outcome = kDone;
    for (unsigned code; TakeCodeFast(stream, &in, width, &code);) {
        if ((code & ~1u) == clearCode) {
            if (code != clearCode) break;
            width = startWidth;
            top = 1u << width;
            next = clearCode + 2;
            previous.length = 0;
            continue;
        }
        if (code > next || (code == next && previous.length == 0)) {
            outcome = kCorrupt;
            break;
        }
        if (out >= limit) {
            outcome = kSurplus;
            break;
        }
        // The string that the last code and this one add to the dictionary: it ends with the pixel written next.
        table[next] = {previous.at, previous.length + 1};
        Entry entry = table[code];
        const uint8_t* from = base + entry.at;
        CopyStep(out, from);
        for (unsigned done = kStep; done < entry.length; done += kStep) CopyStep(out + done, from + done);
        if (code == next) out[entry.length - 1] = *out;
        if (previous.length && next < kMostCodes && ++next >= top && width < kMostCodeBits) {
            top = 1u << ++width;  // not doubled: of one-bit pixels it starts below the first entry
        }
        previous = {static_cast<uint32_t>(out - base), entry.length};
        out += entry.length;
    }
    if (out > limit) {
        outcome = kSurplus;
        out = limit;
    }
    count_ = static_cast<uint64_t>(out - first);
    return outcome;
}
