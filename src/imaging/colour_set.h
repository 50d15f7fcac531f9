// Up to 256 colours with opacity, numbered in the order in which they came.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>

class ColourSet {
public:
    static constexpr int kMost = 256;
    static constexpr int kNone = -1;

    // cppcheck-suppress uninitMemberVar ; a colour counts only beside its number
    ColourSet() { memset(numbers_, 0xFF, sizeof numbers_); }

    // The number of the colour (any 32 bits), which is added when it is new; kNone when there is no room for it.
    int Number(uint32_t colour) {
        uint32_t slot = colour * 0x9E3779B1u >> (32 - kSlotBits);
        while (numbers_[slot] != kFree && colours_[slot] != colour) slot = (slot + 1) % kSlots;
        if (numbers_[slot] == kFree) {
            if (count_ == kMost) return kNone;
            colours_[slot] = colour;
            numbers_[slot] = static_cast<int16_t>(count_);
            inOrder_[count_++] = colour;
        }
        return numbers_[slot];
    }

    std::span<const uint32_t> Colours() const { return {inOrder_, static_cast<size_t>(count_)}; }

private:
    static constexpr int kSlotBits = 10;  // at most a quarter full, so that a search ends soon
    static constexpr uint32_t kSlots = 1u << kSlotBits;
    static constexpr int16_t kFree = -1;

    uint32_t colours_[kSlots];
    int16_t numbers_[kSlots];
    uint32_t inOrder_[kMost];
    int count_ = 0;
};
