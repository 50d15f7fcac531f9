// The strings that an LZW encoder knows, in two forms with the same interface:
//
//   Reset(literals)            forgets all strings but the `literals` single pixels, whose codes are their values
//   Find(prefix, pixel, &slot) the code of the string of code `prefix` followed by `pixel`, or 0, which no string of
//                              two pixels has, when it is not known; `slot` is then where it belongs
//   Fill(slot, prefix, pixel, code)  makes that string known as `code`, below 4096
//
// Both are for pixels below 1 << depth and take no memory outside the object.
#pragma once

#include <cstdint>
#include <cstring>

#include "gif/lzw_limits.h"

// For up to 64 colours: every code has a row with the codes of its continuations. No search, no hashing; a row is
// cleared when its code is given, which also brings it near.
template <unsigned kDepth>
// cppcheck-suppress noConstructor ; Reset makes it ready, clearing no more than needed
class RowDictionary {
public:
    using Slot = uint16_t*;

    void Reset(unsigned literals) { memset(rows_, 0, literals * sizeof rows_[0]); }
    unsigned Find(unsigned prefix, unsigned pixel, Slot* slot) {
        *slot = &rows_[prefix][pixel];
        return **slot;
    }
    void Fill(Slot slot, unsigned, unsigned, unsigned code) {
        *slot = static_cast<uint16_t>(code);
        memset(rows_[code], 0, sizeof rows_[code]);
    }

private:
    uint16_t rows_[kMostCodes][1u << kDepth];
};

// For more colours, whose rows would not fit near the processor: an open-addressing hash table, at most a quarter full.
// cppcheck-suppress noConstructor ; Reset makes it ready
class HashDictionary {
public:
    using Slot = uint32_t*;

    void Reset(unsigned) { memset(slots_, 0, sizeof slots_); }
    unsigned Find(unsigned prefix, unsigned pixel, Slot* slot) {
        uint32_t key = KeyOf(prefix, pixel);
        // The prefix comes late, being the outcome of the search before: little may be computed from it.
        for (unsigned at = prefix * 9 ^ pixel << 6;; ++at) {
            *slot = &slots_[at % kSlots];
            uint32_t difference = **slot ^ key;
            if (difference < kMostCodes) return difference;
            if (**slot == 0) return 0;
        }
    }
    static void Fill(Slot slot, unsigned prefix, unsigned pixel, unsigned code) { *slot = KeyOf(prefix, pixel) | code; }

private:
    static constexpr unsigned kSlots = 1u << 14;

    // A slot: prefix and pixel from bit 12, the code below; 0 is an empty one.
    static uint32_t KeyOf(unsigned prefix, unsigned pixel) { return prefix << 20 | pixel << 12; }

    uint32_t slots_[kSlots];
};
