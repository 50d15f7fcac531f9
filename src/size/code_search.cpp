#include "size/code_search.h"

#include <new>

#include "size/code_passes.h"
#include "size/pixel_choices.h"

namespace {

// How the effort is spent on one form of the pixels.
struct Plan {
    std::span<const LookAhead> looks;  // tried in passes of their own
    size_t points = 0;                 // at most so many places for clear codes are searched; 0: none
    uint64_t slack = 0;                // see CodePasses
    size_t searched = 0;               // so many of the looks, the best ones
};

constexpr LookAhead kFastLooks[] = {{0, 1, 0, 4}};
constexpr LookAhead kNormalLooks[] = {{0, 1, 0, 8}, {2, 1, 1, 8}, {2, 1, 4, 8}, {2, 3, 1, 8}};
constexpr LookAhead kMaxLooks[] = {{0, 1, 0, 32}, {2, 1, 1, 32}, {2, 1, 4, 32}, {2, 3, 1, 32}, {8, 4, 2, 32}};

Plan PlanFor(Effort effort) {
    switch (effort) {
        case Effort::kFast: return {kFastLooks};
        case Effort::kNormal: return {kNormalLooks, 32, 4000, 1};
        default: return {kMaxLooks, 200, 6000, 2};
    }
}

// The search, which keeps the shortest sequence so far.
struct Search {
    const PixelsToEncode& image;
    Plan plan;
    uint64_t mostBits;
    CodeSequence best;  // without codes while there is none

    unsigned CodeSize() const { return static_cast<unsigned>(image.codeSize); }
    // Longer ones are of no use. Those that are a little too long are: they tell where to go on.
    uint64_t Limit() const {
        const uint64_t near = mostBits + mostBits / 8;
        return best.codes.empty() ? near : std::min(near, best.bits - 1);
    }
};

// Places for clear codes at equal distances.
std::vector<size_t> EvenPoints(size_t pixels, size_t most) {
    const size_t step = std::max<size_t>(pixels / most, 32);
    std::vector<size_t> points;
    for (size_t at = 0; at < pixels; at += step) points.push_back(at);
    return points;
}

template <typename Pixels>
void SearchAmong(const Pixels& pixels, Search* search) {
    CodePasses<Pixels> passes(pixels, search->CodeSize(), search->image.stop);
    CodeSequence made;
    if (passes.ClearWhenFull({}, search->Limit(), &made)) std::swap(search->best, made);
    const LookAhead* bestLook = &search->plan.looks[0];
    for (const LookAhead& look : search->plan.looks)
        if (passes.ClearWhenOvertaken(look, search->Limit(), &made)) {
            std::swap(search->best, made);
            bestLook = &look;
        }
    if (!search->plan.points) return;
    if (passes.ClearAtPoints(*bestLook, EvenPoints(pixels.Count(), search->plan.points), search->plan.slack,
                             search->Limit(), &made))
        std::swap(search->best, made);
}

// The pixels with all free ones transparent.
std::vector<uint8_t> WithFreeOnesTransparent(const PixelsToEncode& image) {
    std::vector<uint8_t> pixels(image.pixels.begin(), image.pixels.end());
    for (size_t i = 0; i < pixels.size(); ++i)
        if (image.free[i]) pixels[i] = static_cast<uint8_t>(image.transparent);
    return pixels;
}

void SearchAll(Search* search) {
    const PixelsToEncode& image = search->image;
    SearchAmong(ExactPixels(image.pixels), search);
    if (!image.free.empty()) {
        SearchAmong(ExactPixels(WithFreeOnesTransparent(image)), search);
        SearchAmong(FreePixels(image, false), search);
    }
    if (image.alike) SearchAmong(AlikePixels(image), search);
}

}  // namespace

bool SearchCodes(const PixelsToEncode& image, Effort effort, uint64_t mostBits, EncodedPixels* result) {
    *result = {};
    try {
        constexpr uint64_t kAnyNumber = UINT64_MAX / 2;
        Search search = {image, PlanFor(effort), mostBits ? mostBits : kAnyNumber, {}};
        SearchAll(&search);
        if (search.best.codes.empty() || search.best.bits > search.mostBits || (image.stop && image.stop->load()))
            return false;
        result->data = PackCodes(search.best, search.CodeSize());
        result->bits = search.best.bits;
        return true;
    } catch (const std::bad_alloc&) {
        *result = {};
        return false;
    }
}
