// Short numbers for the colours of an animation.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "animation/paint_image.h"

using ColourId = uint16_t;
constexpr ColourId kTransparentId = 0;

class ColourIds {
public:
    static constexpr size_t kMost = 0xFFFF;  // colours, kTransparent counted

    // Throws std::bad_alloc when memory runs out, as Number does.
    ColourIds() : slots_(kSlots) { pixels_.push_back(kTransparent); }

    // Gives the pixels their numbers; colours that are new get the next ones. False when there are too many colours.
    bool Number(const uint32_t* pixels, size_t count, ColourId* ids) {
        for (size_t i = 0; i < count; ++i) {
            if (pixels[i] != lastPixel_ && !Look(pixels[i])) return false;
            ids[i] = lastId_;
        }
        return true;
    }

    // The pixel of each number.
    std::span<const uint32_t> Pixels() const { return pixels_; }

    // The number of a pixel; Pixels().size() for one that has none.
    size_t Find(uint32_t pixel) const {
        if (pixel == kTransparent) return kTransparentId;
        const ColourId id = slots_[SlotOf(pixel)];
        return id ? id : pixels_.size();
    }

private:
    static constexpr int kSlotBits = 17;  // at most half full
    static constexpr uint32_t kSlots = 1u << kSlotBits;

    uint32_t SlotOf(uint32_t pixel) const {
        uint32_t slot = pixel * 0x9E3779B1u >> (32 - kSlotBits);
        while (slots_[slot] && pixels_[slots_[slot]] != pixel) slot = (slot + 1) % kSlots;
        return slot;
    }
    bool Look(uint32_t pixel) {
        ColourId id = kTransparentId;
        if (pixel != kTransparent) {
            ColourId& slot = slots_[SlotOf(pixel)];
            if (!slot) {
                if (pixels_.size() == kMost) return false;
                pixels_.push_back(pixel);
                slot = static_cast<ColourId>(pixels_.size() - 1);
            }
            id = slot;
        }
        lastPixel_ = pixel;
        lastId_ = id;
        return true;
    }

    std::vector<ColourId> slots_;   // 0: free
    std::vector<uint32_t> pixels_;  // by number
    uint32_t lastPixel_ = kTransparent;
    ColourId lastId_ = kTransparentId;
};
