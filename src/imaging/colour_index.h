// Which number a colour has, for up to 256 colours, without looking through them.
#pragma once

#include <cstdint>
#include <cstring>

constexpr uint32_t PackColour(uint32_t red, uint32_t green, uint32_t blue) {
    return red | green << 8 | blue << 16;
}

class ColourIndex {
public:
    static constexpr int kMissing = -1;

    // cppcheck-suppress uninitMemberVar ; a number counts only beside its colour
    ColourIndex() { memset(colours_, 0xFF, sizeof colours_); }

    // The number given to the colour, or kMissing.
    int Find(uint32_t colour) const {
        uint32_t slot = SlotOf(colour);
        return colours_[slot] == colour ? numbers_[slot] : kMissing;
    }

    // Gives the colour a number (0 to 255), unless it has one. At most 256 colours may be added.
    // True when it had none.
    bool Add(uint32_t colour, int number) {
        uint32_t slot = SlotOf(colour);
        if (colours_[slot] == colour) return false;
        colours_[slot] = colour;
        numbers_[slot] = static_cast<uint8_t>(number);
        return true;
    }

private:
    static constexpr int kSlotBits = 10;  // at most a quarter full, so that a search ends soon
    static constexpr uint32_t kSlots = 1u << kSlotBits;
    static constexpr uint32_t kFree = 0xFFFFFFFF;  // no colour: those have 24 bits

    // The slot that holds the colour, or the free one where it belongs.
    uint32_t SlotOf(uint32_t colour) const {
        uint32_t slot = colour * 0x9E3779B1u >> (32 - kSlotBits);
        while (colours_[slot] != colour && colours_[slot] != kFree) slot = (slot + 1) % kSlots;
        return slot;
    }

    uint32_t colours_[kSlots];
    uint8_t numbers_[kSlots];
};
