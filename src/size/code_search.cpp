#include "size/code_search.h"

#include <algorithm>
#include <new>

#include "size/code_passes.h"
#include "size/pixel_choices.h"

namespace {

// Clear codes are looked for at places so many strings apart, first everywhere and then around those that were found.
struct SearchRound {
    size_t step;
    size_t spread;  // strings on either side
    size_t looks;   // the best so many of the form are tried from each place
    uint64_t slack;
};

// How effort is spent. The first look ahead is taken on every form of the pixels, the others on the best forms, and
// clear codes are searched for on the best of these.
struct Plan {
    std::span<const LookAhead> looks;
    std::span<const LookAhead> furtherLooks;         // in images whose strings do not fill a table
    size_t forms = 0;                                // so many get the further looks
    size_t searched = 0;                             // and on so many of them clear codes are searched for
    uint64_t slack = 0;                              // of the search, see AnyCodePasses
    size_t mostStep = 0, leastStep = 0, places = 0;  // of the first round, in images of few strings so many places
    std::span<const SearchRound> rounds;             // the further ones
};

constexpr LookAhead kFastLooks[] = {{0, 1, 0, 2}};
constexpr LookAhead kFastManyLooks[] = {{1, 1, 0, 2}};
constexpr LookAhead kNormalLooks[] = {{0, 1, 0, 4}, {1, 1, 0, 4}, {2, 1, 4, 4}};
constexpr LookAhead kNormalFurther[] = {{2, 2, 1, 0}, {1, 1, 0, 0}, {4, 3, 1, 0}};
constexpr LookAhead kMaxFurther[] = {{2, 2, 1, 0}, {1, 1, 0, 0}, {2, 1, 0, 0},  {4, 3, 1, 0},
                                     {4, 2, 0, 0}, {8, 4, 1, 0}, {3, 5, 0, 0},  {8, 1, 2, 0},
                                     {1, 2, 0, 0}, {2, 4, 0, 0}, {16, 3, 1, 0}, {6, 6, 3, 0}};
constexpr SearchRound kNormalRounds[] = {{128, 384, 1, 400}, {32, 96, 1, 400}};
constexpr LookAhead kMaxLooks[] = {{0, 1, 0, 32}, {2, 1, 1, 32}, {2, 1, 4, 32}, {2, 3, 1, 32}, {8, 4, 2, 32}};
constexpr SearchRound kMaxRounds[] = {{32, 256, 1, 800}, {8, 48, 3, 500}};

constexpr Plan kFastPlan = {kFastLooks, {}, 0, 0, 0, 0, 0, 0, {}};
constexpr Plan kFastManyPlan = {kFastManyLooks, {}, 0, 0, 0, 0, 0, 0, {}};  // of images of many colours
constexpr Plan kNormalPlan = {kNormalLooks, kNormalFurther, 1, 1, 1200, 512, 32, 16, kNormalRounds};
constexpr Plan kMaxPlan = {kMaxLooks, kMaxFurther, 3, 1, 2500, 256, 32, 32, kMaxRounds};

// Looking ahead while the table grows is worth its time in a hurry where many colours make the strings short.
const Plan& PlanFor(Effort effort, int codeSize) {
    if (effort == Effort::kFast) return codeSize < kMostCodeSize ? kFastPlan : kFastManyPlan;
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
        const bool isSmall = !HasClears();
        for (AnyCodePasses* form : best) {
            if (isSmall) TryPairs(form, plan_.furtherLooks);
            TryPairs(form, plan_.looks.subspan(1));
        }
        for (size_t i = 0; i < std::min(plan_.searched, best.size()); ++i) SearchClears(best[i]);
    }

    // The shortest one; without codes when none is short enough.
    const CodeSequence& Best() const { return best_; }

private:
    // Longer ones are of no use. Those that are a little too long are: they tell where to go on.
    uint64_t Limit() const {
        const uint64_t most = best_.codes.empty() ? mostBits_ : std::min(mostBits_, best_.bits);
        return most + most / 8;
    }
    bool HasClears() const { return std::ranges::count(best_.codes, uint16_t(1u << codeSize_)) > 1; }

    void Keep() {
        if (best_.codes.empty() || made_.bits < best_.bits) std::swap(best_, made_);
    }

    void TryPairs(AnyCodePasses* form, std::span<const LookAhead> looks) {
        for (const LookAhead& look : looks) TryPair(form, look);
    }

    void TryPair(AnyCodePasses* form, const LookAhead& look) {
        if (!form->ClearWhenOvertaken(look, Limit(), &made_)) return;
        const Pair pair = {form, &look, made_.bits};
        pairs_.insert(std::ranges::upper_bound(pairs_, pair.bits, {}, &Pair::bits), pair);
        Keep();
    }

    // The looks ahead that were tried on a form, the best ones first.
    std::vector<LookAhead> LooksOf(const AnyCodePasses* form) const {
        std::vector<LookAhead> looks;
        for (const Pair& pair : pairs_)
            if (pair.form == form) looks.push_back(*pair.look);
        return looks;
    }

    void SearchClears(AnyCodePasses* form) {
        const std::vector<LookAhead> looks = LooksOf(form);
        std::vector<size_t> clears, starts = StringStarts(best_, codeSize_, &clears);
        if (starts.empty()) return;
        const size_t step = std::clamp(starts.size() / plan_.places, plan_.leastStep, plan_.mostStep);
        CodeSequence found;
        if (!form->ClearAtPoints({looks.data(), 1}, PointsEverywhere(starts, clears, step), plan_.slack, Limit(),
                                 &found))
            return;
        for (const SearchRound& round : plan_.rounds) {
            starts = StringStarts(found, codeSize_, &clears);
            if (clears.empty()) break;
            if (!form->ClearAtPoints({looks.data(), std::min(round.looks, looks.size())},
                                     PointsAround(starts, clears, round), round.slack, Limit(), &made_))
                return;
            if (made_.bits < found.bits) std::swap(found, made_);
        }
        std::swap(made_, found);
        Keep();
    }

    // The pixels that begin every `step`-th string, and those of the clear codes.
    static std::vector<size_t> PointsEverywhere(const std::vector<size_t>& starts, const std::vector<size_t>& clears,
                                                size_t step) {
        std::vector<size_t> points = clears;
        for (size_t i = 0; i < starts.size(); i += step) points.push_back(starts[i]);
        return InOrder(std::move(points));
    }

    // The first pixel and those that begin strings around the clear codes.
    static std::vector<size_t> PointsAround(const std::vector<size_t>& starts, const std::vector<size_t>& clears,
                                            const SearchRound& round) {
        std::vector<size_t> points = {0};
        for (size_t clear : clears) {
            const auto middle = static_cast<size_t>(std::ranges::lower_bound(starts, clear) - starts.begin());
            for (size_t i = middle - std::min(middle, round.spread) / round.step * round.step;
                 i < std::min(middle + round.spread + 1, starts.size()); i += round.step)
                points.push_back(starts[i]);
        }
        return InOrder(std::move(points));
    }

    static std::vector<size_t> InOrder(std::vector<size_t> points) {
        std::ranges::sort(points);
        points.erase(std::unique(points.begin(), points.end()), points.end());
        return points;
    }

    const Plan& plan_;
    unsigned codeSize_;
    uint64_t mostBits_;
    std::vector<Pair> pairs_;  // the shortest first
    CodeSequence best_, made_;
};

// The pixels with all free ones transparent; none where none is free.
std::vector<uint8_t> Cleared(const PixelsToEncode& image) {
    if (image.free.empty()) return {};
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
        Search search(image, PlanFor(effort, image.codeSize), mostBits);
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
