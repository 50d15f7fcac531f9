#include "size/code_search.h"

#include <algorithm>
#include <new>

#include "size/code_passes.h"
#include "size/pixel_choices.h"

namespace {

// How effort is spent. The first look ahead is taken on every form of the pixels, the others on the best forms, and
// clear codes are searched for the best pairs of both.
struct Plan {
    std::span<const LookAhead> looks;
    size_t forms = 0;                    // so many get the further looks
    size_t searched = 0;                 // so many pairs are searched
    size_t points = 0;                   // places for clear codes, in images whose strings are few
    size_t leastStep = 0, mostStep = 0;  // bounds of the strings between two places
    uint64_t slack = 0;                  // of the search, see AnyCodePasses
    size_t fineStep = 0;                 // then again so close together around the clear codes found, unless 0
};

constexpr LookAhead kFastLooks[] = {{0, 1, 0, 4}};
constexpr LookAhead kNormalLooks[] = {{0, 1, 0, 8}, {2, 1, 1, 8}, {2, 1, 4, 8}, {2, 3, 1, 8}};
constexpr LookAhead kMaxLooks[] = {{0, 1, 0, 32}, {2, 1, 1, 32}, {2, 1, 4, 32}, {2, 3, 1, 32}, {8, 4, 2, 32}};

constexpr Plan kFastPlan = {kFastLooks};
constexpr Plan kNormalPlan = {kNormalLooks, 1, 1, 16, 32, 512, 3000, 0};
constexpr Plan kMaxPlan = {kMaxLooks, 4, 3, 64, 16, 128, 6000, 8};

const Plan& PlanFor(Effort effort) {
    if (effort == Effort::kFast) return kFastPlan;
    return effort == Effort::kNormal ? kNormalPlan : kMaxPlan;
}

// A form of the pixels and a look ahead, and what they came to.
struct Pair {
    AnyCodePasses* form;
    const LookAhead* look;
    uint64_t bits;
};

// Tries forms and keeps the shortest sequence.
class Search {
public:
    Search(const PixelsToEncode& image, const Plan& plan, uint64_t mostBits)
        : plan_(plan), codeSize_(static_cast<unsigned>(image.codeSize)), mostBits_(mostBits) {}

    void Try(std::span<AnyCodePasses* const> forms) {
        for (AnyCodePasses* form : forms) TryPair(form, plan_.looks[0]);
        // What most encoders do: not better by design, but sometimes by chance.
        if (HasClears() && forms[0]->ClearWhenFull({}, Limit(), &made_)) Keep();
        std::vector<AnyCodePasses*> best;
        for (size_t i = 0; i < std::min(plan_.forms, pairs_.size()); ++i) best.push_back(pairs_[i].form);
        for (AnyCodePasses* form : best)
            for (const LookAhead& look : plan_.looks.subspan(1)) TryPair(form, look);
        const size_t searched = std::min(plan_.searched, pairs_.size());
        for (size_t i = 0; i < searched; ++i) SearchClears(pairs_[i]);
    }

    // The shortest one; without codes when none is short enough.
    const CodeSequence& Best() const { return best_; }

private:
    // Longer ones are of no use. Those that are a little too long are: they tell where to go on.
    uint64_t Limit() const { return mostBits_ + mostBits_ / 8; }
    bool HasClears() const { return std::ranges::count(best_.codes, uint16_t(1u << codeSize_)) > 1; }

    void Keep() {
        if (best_.codes.empty() || made_.bits < best_.bits) std::swap(best_, made_);
    }

    void TryPair(AnyCodePasses* form, const LookAhead& look) {
        if (!form->ClearWhenOvertaken(look, Limit(), &made_)) return;
        const Pair pair = {form, &look, made_.bits};
        pairs_.insert(std::ranges::upper_bound(pairs_, pair.bits, {}, &Pair::bits), pair);
        Keep();
    }

    void SearchClears(const Pair& pair) {
        std::vector<size_t> clears;
        std::vector<size_t> starts = StringStarts(best_, codeSize_, &clears);
        const size_t step = std::clamp(starts.size() / plan_.points, plan_.leastStep, plan_.mostStep);
        std::vector<size_t> points;
        for (size_t i = 0; i < starts.size(); i += step) points.push_back(starts[i]);
        if (!pair.form->ClearAtPoints(*pair.look, points, plan_.slack, Limit(), &made_)) return;
        Keep();
    }

    const Plan& plan_;
    unsigned codeSize_;
    uint64_t mostBits_;
    std::vector<Pair> pairs_;  // the shortest first
    CodeSequence best_, made_;
};

// The pixels with all free ones transparent.
std::vector<uint8_t> Cleared(const PixelsToEncode& image) {
    std::vector<uint8_t> pixels(image.pixels.begin(), image.pixels.end());
    for (size_t i = 0; i < image.free.size(); ++i)
        if (image.free[i]) pixels[i] = static_cast<uint8_t>(image.transparent);
    return pixels;
}

bool IsStopped(const PixelsToEncode& image) {
    return image.stop && image.stop->load(std::memory_order_relaxed);
}

// The forms of the pixels that an image allows, searched.
void SearchForms(const PixelsToEncode& image, Search* search) {
    const auto codeSize = static_cast<unsigned>(image.codeSize);
    const std::vector<uint8_t> clearedPixels = Cleared(image);
    const ExactPixels own(image.pixels), cleared(clearedPixels);
    const FreePixels free(image.pixels, clearedPixels);
    const AlikePixels alike(image);
    CodePasses<ExactPixels> ownPasses(own, codeSize, image.stop), clearedPasses(cleared, codeSize, image.stop);
    CodePasses<FreePixels> freePasses(free, codeSize, image.stop);
    CodePasses<AlikePixels> alikePasses(alike, codeSize, image.stop);
    std::vector<AnyCodePasses*> forms = {&ownPasses};
    if (!image.free.empty()) forms.insert(forms.end(), {&clearedPasses, &freePasses});
    if (image.alike) forms.push_back(&alikePasses);
    search->Try(forms);
}

}  // namespace

bool SearchCodes(const PixelsToEncode& image, Effort effort, uint64_t mostBits, EncodedPixels* result) {
    *result = {};
    constexpr uint64_t kAnyNumber = UINT64_MAX / 2;
    if (!mostBits) mostBits = kAnyNumber;
    try {
        Search search(image, PlanFor(effort), mostBits);
        SearchForms(image, &search);
        if (search.Best().codes.empty() || search.Best().bits > mostBits || IsStopped(image)) return false;
        result->data = PackCodes(search.Best(), static_cast<unsigned>(image.codeSize));
        result->bits = search.Best().bits;
        return true;
    } catch (const std::bad_alloc&) {
        *result = {};
        return false;
    }
}
