// The strings that an LZW encoder knows: a tree whose edges are pixels.
#pragma once

#include <cstdint>
#include <cstring>

// Answers "which code is the string of `prefix` followed by `pixel`". Most strings are only ever continued by one pixel,
// so each code keeps its first continuation beside itself, where finding it costs one load; the others go to a hash
// table. All memory lies in the object; it is cleared by Reset only.
class EncoderDictionary {
public:
    static constexpr unsigned kNone = 0;  // no string of two or more pixels has code 0

    // Forgets all strings but the `literals` single pixels, whose codes are their values.
    void Reset(unsigned literals) {
        memset(nodes_, 0, literals * sizeof nodes_[0]);
        if (hashed_) memset(slots_, 0, sizeof slots_);
        hashed_ = false;
    }

    // Must be called before the first Reset.
    void Clear() {
        memset(slots_, 0, sizeof slots_);
        hashed_ = false;
    }

    // The code of `prefix` + `pixel`, or kNone.
    unsigned Find(unsigned prefix, unsigned pixel) const {
        uint32_t node = nodes_[prefix];
        if ((node & kFirstMask) == (pixel | kHasFirst)) return node >> kCodeShift;
        return node & kHasMore ? FindHashed(prefix, pixel) : kNone;
    }

    // Adds `prefix` + `pixel`, which must not be known, as `code` (below 4096).
    void Add(unsigned prefix, unsigned pixel, unsigned code) {
        nodes_[code] = 0;
        if (!(nodes_[prefix] & kHasFirst)) {
            nodes_[prefix] = pixel | kHasFirst | code << kCodeShift;
        } else {
            nodes_[prefix] |= kHasMore;
            AddHashed(prefix, pixel, code);
        }
    }

private:
    // A node: its first continuation's pixel in bits 0-7, flags, that continuation's code from bit 16.
    static constexpr uint32_t kHasFirst = 0x100;
    static constexpr uint32_t kFirstMask = 0x1FF;
    static constexpr uint32_t kHasMore = 0x200;
    static constexpr unsigned kCodeShift = 16;
    // A slot: prefix and pixel from bit 12, the code below; 0 is an empty slot.
    static constexpr unsigned kSlotBits = 14;
    static constexpr unsigned kSlots = 1u << kSlotBits;  // at most a quarter in use
    static constexpr unsigned kSlotCodeBits = 12;

    static unsigned HomeOf(uint32_t key) { return key * 0x9E3779B1u >> (32 - kSlotBits); }
    static uint32_t KeyOf(unsigned prefix, unsigned pixel) { return prefix << 8 | pixel; }

    unsigned FindHashed(unsigned prefix, unsigned pixel) const {
        uint32_t key = KeyOf(prefix, pixel);
        for (unsigned at = HomeOf(key);; at = (at + 1) % kSlots) {
            uint32_t slot = slots_[at];
            if (slot >> kSlotCodeBits == key && slot) return slot & ((1u << kSlotCodeBits) - 1);
            if (!slot) return kNone;
        }
    }
    void AddHashed(unsigned prefix, unsigned pixel, unsigned code) {
        uint32_t key = KeyOf(prefix, pixel);
        unsigned at = HomeOf(key);
        while (slots_[at]) at = (at + 1) % kSlots;
        slots_[at] = key << kSlotCodeBits | code;
        hashed_ = true;
    }

    uint32_t nodes_[4096];
    uint32_t slots_[kSlots];
    bool hashed_;
};
