// What may be written for each pixel of an image, in three forms with the same interface:
//
//   Count()                   how many pixels there are
//   Allows(at, index)         whether pixel `at` may be written as `index`
//   ForEach(at, visit)        calls visit(index, isOwn) for each index that it may be, the preferred ones first; isOwn
//                             is false for those that change what is seen
//   kIsExact                  whether each pixel can only be one index; From(at) is then where they stand in memory
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
    template <typename Visit>
    void ForEach(size_t at, Visit visit) const {
        visit(pixels_[at], true);
    }

private:
    const uint8_t* pixels_;
    size_t count_;
};

// Where a pixel is free it may be transparent as well.
class FreePixels {
public:
    static constexpr bool kIsExact = false;
    FreePixels(const PixelsToEncode& image, bool prefersTransparent)
        : pixels_(image.pixels),
          free_(image.free),
          transparent_(static_cast<uint8_t>(image.transparent)),
          prefersTransparent_(prefersTransparent) {}

    size_t Count() const { return pixels_.size(); }
    bool Allows(size_t at, unsigned index) const {
        return pixels_[at] == index || (free_[at] && index == transparent_);
    }
    template <typename Visit>
    void ForEach(size_t at, Visit visit) const {
        const unsigned own = pixels_[at];
        if (!free_[at] || own == transparent_) return visit(own, true);
        visit(prefersTransparent_ ? transparent_ : own, true);
        visit(prefersTransparent_ ? own : transparent_, true);
    }

private:
    std::span<const uint8_t> pixels_, free_;
    unsigned transparent_;
    bool prefersTransparent_;
};

// A pixel may also be any index that is alike to its own.
class AlikePixels {
public:
    static constexpr bool kIsExact = false;
    // Throws std::bad_alloc when memory runs out.
    explicit AlikePixels(const PixelsToEncode& image);

    size_t Count() const { return image_->pixels.size(); }
    bool Allows(size_t at, unsigned index) const {
        const unsigned own = image_->pixels[at];
        return own == index || (*image_->alike)[own][index] || IsTransparent(at, index);
    }
    template <typename Visit>
    void ForEach(size_t at, Visit visit) const {
        const unsigned own = image_->pixels[at];
        visit(own, true);
        if (IsFree(at) && static_cast<unsigned>(image_->transparent) != own)
            visit(static_cast<unsigned>(image_->transparent), true);
        for (uint8_t index : others_[own])
            if (!IsTransparent(at, index)) visit(index, false);
    }

private:
    bool IsFree(size_t at) const { return !image_->free.empty() && image_->free[at]; }
    bool IsTransparent(size_t at, unsigned index) const {
        return static_cast<int>(index) == image_->transparent && IsFree(at);
    }

    const PixelsToEncode* image_;
    std::array<std::vector<uint8_t>, 256> others_;  // for each index those that are alike, itself left out
};
