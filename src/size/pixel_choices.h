// What may be written for each pixel of an image. Those that leave a choice have two forms with the same interface:
//
//   Count()                     how many pixels there are
//   Allows(at, index)           whether pixel `at` may be written as `index`
//   Preferred(at)               what it becomes when there is nothing to choose
//   ForEachOther(at, visit)     calls visit(index) for each other index that it may be
//   kAreTwo                     whether that is one at most
//   Common(at, indices, most)   so many of the pixels from `at` on may be written as `indices`
//   Changed(at, indices, count) how many of `count` pixels would be seen changed
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "size/code_search.h"

// Every pixel is what it is.
class ExactPixels {
public:
    static constexpr bool kIsExact = true;
    explicit ExactPixels(std::span<const uint8_t> pixels) : pixels_(pixels.data()), count_(pixels.size()) {}

    size_t Count() const { return count_; }
    const uint8_t* From(size_t at) const { return pixels_ + at; }
    bool Allows(size_t at, unsigned index) const { return pixels_[at] == index; }

private:
    const uint8_t* pixels_;
    size_t count_;
};

// Where a pixel is free it may be transparent as well.
class FreePixels {
public:
    static constexpr bool kIsExact = false;
    static constexpr bool kAreTwo = true;
    // `cleared`: the pixels with all free ones transparent.
    FreePixels(std::span<const uint8_t> pixels, std::span<const uint8_t> cleared)
        : own_(pixels.data()), cleared_(cleared.data()), count_(pixels.size()) {}

    size_t Count() const { return count_; }
    // Transparent: no string of transparent pixels would ever be learned otherwise, and nothing could follow one.
    unsigned Preferred(size_t at) const { return cleared_[at]; }
    bool Allows(size_t at, unsigned index) const { return own_[at] == index || cleared_[at] == index; }
    template <typename Visit>
    void ForEachOther(size_t at, Visit visit) const {
        if (cleared_[at] != own_[at]) visit(own_[at]);
    }
    size_t Common(size_t at, const uint8_t* indices, size_t most) const;
    static size_t Changed(size_t, const uint8_t*, size_t) { return 0; }

private:
    const uint8_t *own_, *cleared_;
    size_t count_;
};

// A pixel may also be any index that is alike to its own.
class AlikePixels {
public:
    static constexpr bool kIsExact = false;
    static constexpr bool kAreTwo = false;
    explicit AlikePixels(const PixelsToEncode& image) : image_(image) {}

    size_t Count() const { return image_.pixels.size(); }
    unsigned Preferred(size_t at) const { return image_.pixels[at]; }
    bool Allows(size_t at, unsigned index) const {
        return IsSeenTheSame(at, index) || (*image_.alike)[image_.pixels[at]][index];
    }
    template <typename Visit>
    void ForEachOther(size_t at, Visit visit) const {
        const unsigned own = image_.pixels[at], indices = 1u << image_.codeSize;
        for (unsigned index = 0; index < indices; ++index)
            if (index != own && Allows(at, index)) visit(index);
    }
    size_t Common(size_t at, const uint8_t* indices, size_t most) const {
        size_t same = 0;
        while (same < most && Allows(at + same, indices[same])) ++same;
        return same;
    }
    size_t Changed(size_t at, const uint8_t* indices, size_t count) const {
        size_t changed = 0;
        for (size_t i = 0; i < count; ++i) changed += IsSeenTheSame(at + i, indices[i]) ? 0u : 1u;
        return changed;
    }

private:
    bool IsSeenTheSame(size_t at, unsigned index) const {
        return image_.pixels[at] == index ||
               (static_cast<int>(index) == image_.transparent && !image_.free.empty() && image_.free[at]);
    }

    const PixelsToEncode& image_;
};
