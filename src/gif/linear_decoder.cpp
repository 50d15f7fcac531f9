#include "gif/linear_decoder.h"

#include <algorithm>
#include <cstring>

#include "gif/sub_blocks.h"

namespace {

struct StringPlace {
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

constexpr unsigned kFilled = 56;  // bits that Fill leaves at least

// Takes in up to 8 bytes at once. False when the chain has less than that; TakeCode can take what there is.
inline bool Fill(CodeStream& stream, CodeStream::Bits* at) {
    if (at->end - at->next < 8) *at = stream.Fetch(*at);
    if (at->end - at->next < 8) return false;
    at->bits |= Load64(at->next) << at->count;
    at->next += (63 - at->count) >> 3;
    at->count |= kFilled;
    return true;
}

// As TakeCode; the code is there but for the last ones of the chain.
inline bool TakeCodeFast(CodeStream& stream, CodeStream::Bits* at, unsigned width, unsigned* code) {
    if (at->count < width) return TakeCode(stream, at, width, code);
    *code = static_cast<unsigned>(at->bits) & ((1u << width) - 1);
    at->bits >>= width;
    at->count -= width;
    return true;
}

// Literals in a row, as noise has them, need not wait for the dictionary: so many are taken at once.
constexpr unsigned kRun = 4;
static_assert(kRun * kMostCodeBits <= kFilled);

// The bits that are 0 in `kRun` codes of `width` bits when all of them are literals.
inline uint64_t BeyondLiterals(unsigned clearCode, unsigned width) {
    uint64_t beyond = 0;
    for (unsigned i = 0; i < kRun; ++i) beyond |= uint64_t{(1u << width) - clearCode} << i * width;
    return beyond;
}

// Writes the pixels of a run.
inline void StoreRun(uint8_t* out, uint64_t codes, unsigned width, unsigned clearCode) {
    for (unsigned i = 0; i < kRun; ++i) out[i] = static_cast<uint8_t>((codes >> i * width) & (clearCode - 1));
}

// Adds what a run that is written at `at` teaches: the string before it and its first pixel, then pairs of pixels.
inline void LearnRun(StringPlace* added, StringPlace previous, uint32_t at) {
    added[0] = {previous.at, previous.length + 1};
    for (unsigned i = 1; i < kRun; ++i) added[i] = {at + i - 1, 2};
}

}  // namespace

bool LinearDecoder::Prepare(uint64_t room) {
    memory_ = AllocateScratch(kLiterals + room + kSlack);
    room_ = room;
    if (memory_)
        for (unsigned i = 0; i < kLiterals; ++i) memory_[i] = static_cast<uint8_t>(i);
    return memory_ != nullptr;
}

// In one piece: with the state of the dictionary in a type of its own, or the runs in a function, the compiler gives up
// registers (5 to 20 %).
// NOLINTNEXTLINE(readability-function-cognitive-complexity)
LinearDecoder::Outcome LinearDecoder::Decode(File& file, int codeSize, Manner manner) {
    const unsigned clearCode = 1u << codeSize;
    const unsigned startWidth = static_cast<unsigned>(codeSize) + 1;
    uint8_t* const base = memory_.get();
    uint8_t* const first = base + kLiterals;
    uint8_t* const limit = first + room_;
    uint8_t* out = first;
    CodeStream stream(file, manner);
    CodeStream::Bits in;
    StringPlace table[kMostCodes + kRun];  // more to write to when it is full
    for (unsigned i = 0; i < clearCode; ++i) table[i] = {i, 1};

    unsigned width, top, next;  // bits of a code; the entry that needs one bit more; the entry to be made next
    uint64_t beyondLiterals;
    StringPlace previous = {0, 0};  // where the last string was written
    auto clear = [&] {
        width = startWidth;
        // Of one-bit pixels the first entry needs three bits already, but the code that makes it still has two.
        top = std::max(1u << width, clearCode + 3);
        // Every code makes an entry, so that none needs to ask whether one came before it. What the first one makes
        // lies at the end code, which is never looked up.
        next = clearCode + 1;
        beyondLiterals = BeyondLiterals(clearCode, width);
    };
    auto widen = [&] {
        if (width < kMostCodeBits) {
            top = 1u << ++width;
            beyondLiterals = BeyondLiterals(clearCode, width);
        } else {
            next = kMostCodes;  // the table is full, and stays so
        }
    };
    clear();
    Outcome outcome = kDone;
    for (;;) {
        if (in.count < kMostCodeBits && Fill(stream, &in)) {
            // In most images they are unlikely; that the compiler knows it is worth 10 % there on 32-bit machines.
            while ((in.bits & beyondLiterals) == 0 && (top - next >= kRun || next == kMostCodes) && out + kRun <= limit)
                [[unlikely]] {
                    StoreRun(out, in.bits, width, clearCode);
                    auto at = static_cast<uint32_t>(out - base);
                    LearnRun(table + next, previous, at);
                    previous = {at + kRun - 1, 1};
                    out += kRun;
                    next += kRun;
                    in.bits >>= kRun * width;
                    in.count -= kRun * width;
                    if (next >= top) widen();
                    if (!Fill(stream, &in)) break;
                }
        }
        unsigned code;
        if (!TakeCodeFast(stream, &in, width, &code)) break;
        if ((code & ~1u) == clearCode) {
            if (code != clearCode) break;
            clear();
            continue;
        }
        if (code > next) {
            outcome = kCorrupt;
            break;
        }
        if (out >= limit) {
            outcome = kSurplus;
            break;
        }
        // The string that the last code and this one add to the dictionary: it ends with the pixel written next.
        table[next] = {previous.at, previous.length + 1};
        StringPlace entry = table[code];
        const uint8_t* from = base + entry.at;
        CopyStep(out, from);
        for (unsigned done = kStep; done < entry.length; done += kStep) CopyStep(out + done, from + done);
        if (code == next) out[entry.length - 1] = *out;
        if (++next >= top) widen();
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
