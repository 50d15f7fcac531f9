#include "editing/alignment.h"

#include <algorithm>
#include <cstdlib>
#include <unordered_map>

namespace {

constexpr int kMostEdits = 256;  // of one round; then the way that came farthest is taken
constexpr int kNowhere = -1;

using Labels = std::span<const uint64_t>;
using Pairs = std::vector<IndexPair>;

// Looks for the way from the start of both rows to their ends with the fewest edits. A place is an index in each row;
// on diagonal k the index in the old row is the other one plus k.
class MyersRound {
public:
    MyersRound(Labels old, Labels fresh)
        : old_(old), fresh_(fresh), front_(2 * size_t{kMostEdits} + 3, kNowhere), ends_(Size(old) - Size(fresh)) {}

    // Appends the pairs on the way, counted from `base`, and returns how far in both rows it has led.
    IndexPair Run(IndexPair base, Pairs* pairs) {
        for (int edits = 0; edits <= kMostEdits; ++edits) {
            Advance(edits);
            fronts_.push_back(front_);
            if (std::abs(ends_) <= edits && (edits - ends_) % 2 == 0 && At(front_, ends_) == Size(old_))
                return TakeWay(edits, ends_, base, pairs);
        }
        return TakeWay(kMostEdits, FarthestDiagonal(), base, pairs);
    }

private:
    using Front = std::vector<int>;  // the farthest index in the old row on each diagonal

    static int Size(Labels labels) { return static_cast<int>(labels.size()); }
    static int& At(Front& front, int k) { return *(front.begin() + kMostEdits + 1 + k); }

    // Where diagonal k is entered by one more edit: a member of the old row taken out or one of the new row put in.
    int Enter(Front& front, int k, bool* takesOut) const {
        const int left = At(front, k - 1), above = At(front, k + 1);
        const int out = left != kNowhere && left < Size(old_) ? left + 1 : kNowhere;
        const int put = above != kNowhere && above - k <= Size(fresh_) ? above : kNowhere;
        *takesOut = out > put;
        return std::max(out, put);
    }

    int Start(int edits, int k, bool* takesOut) {
        if (edits == 0) return 0;
        return Enter(fronts_[static_cast<size_t>(edits - 1)], k, takesOut);
    }

    void Advance(int edits) {
        for (int k = -edits; k <= edits; k += 2) {
            bool takesOut;
            int at = edits == 0 ? 0 : Enter(front_, k, &takesOut);
            while (at != kNowhere && at < Size(old_) && at - k < Size(fresh_) && Meets(at, k)) ++at;
            At(front_, k) = at;
        }
    }
    bool Meets(int at, int k) const { return old_[static_cast<size_t>(at)] == fresh_[static_cast<size_t>(at - k)]; }

    int FarthestDiagonal() {
        int farthest = kMostEdits, most = kNowhere;
        for (int k = -kMostEdits; k <= kMostEdits; k += 2) {
            const int at = At(front_, k);
            if (at == kNowhere || 2 * at - k <= most) continue;
            most = 2 * at - k;
            farthest = k;
        }
        return farthest;
    }

    // Goes the way back from where it has led on diagonal `k`.
    IndexPair TakeWay(int edits, int k, IndexPair base, Pairs* pairs) {
        const int end = At(fronts_[static_cast<size_t>(edits)], k);
        const IndexPair reached = {static_cast<uint32_t>(end), static_cast<uint32_t>(end - k)};
        const auto first = static_cast<std::ptrdiff_t>(pairs->size());
        for (; edits >= 0; --edits) {
            bool takesOut = false;
            const int start = Start(edits, k, &takesOut);
            for (int at = At(fronts_[static_cast<size_t>(edits)], k) - 1; at >= start; --at)
                pairs->push_back({base.old + static_cast<uint32_t>(at), base.fresh + static_cast<uint32_t>(at - k)});
            k += takesOut ? -1 : 1;
        }
        std::reverse(pairs->begin() + first, pairs->end());
        return reached;
    }

    Labels old_, fresh_;
    Front front_;
    std::vector<Front> fronts_;  // after each number of edits
    int ends_;                   // the diagonal on which both rows end
};

// How often a label occurs in each row, and where at last.
struct Occurrences {
    uint32_t old = 0, fresh = 0;
    IndexPair last = {};
};
using Census = std::unordered_map<uint64_t, Occurrences>;

Census CountLabels(Labels old, Labels fresh) {
    Census census;
    for (uint32_t i = 0; i < old.size(); ++i) {
        Occurrences& found = census[old[i]];
        ++found.old;
        found.last.old = i;
    }
    for (uint32_t i = 0; i < fresh.size(); ++i) {
        Occurrences& found = census[fresh[i]];
        ++found.fresh;
        found.last.fresh = i;
    }
    return census;
}

// The labels that the other row has too, and where they stand.
struct SharedLabels {
    std::vector<uint64_t> labels;
    std::vector<uint32_t> places;
};

SharedLabels KeepShared(Labels row, const Census& census) {
    SharedLabels shared;
    for (uint32_t i = 0; i < row.size(); ++i) {
        const Occurrences& found = census.at(row[i]);
        if (found.old == 0 || found.fresh == 0) continue;
        shared.labels.push_back(row[i]);
        shared.places.push_back(i);
    }
    return shared;
}

// Pairs as many members of both rows as possible, or nearly as many. Indexes count from `base`.
void AlignAll(Labels old, Labels fresh, IndexPair base, Pairs* pairs) {
    if (old.empty() || fresh.empty()) return;
    const Census census = CountLabels(old, fresh);
    const SharedLabels olds = KeepShared(old, census), news = KeepShared(fresh, census);
    Pairs found;
    for (IndexPair at = {0, 0}; at.old < olds.labels.size() && at.fresh < news.labels.size();) {
        MyersRound round(Labels(olds.labels).subspan(at.old), Labels(news.labels).subspan(at.fresh));
        const IndexPair reached = round.Run(at, &found);
        at = {at.old + reached.old, at.fresh + reached.fresh};
    }
    for (IndexPair pair : found)
        pairs->push_back({base.old + olds.places[pair.old], base.fresh + news.places[pair.fresh]});
}

// The most of the pairs, which increase on the old side, that increase on both: the longest increasing subsequence by
// patience sorting.
Pairs LongestIncrease(const Pairs& all) {
    std::vector<uint32_t> tops;  // of each pile the pair on top
    std::vector<int64_t> before(all.size());
    for (uint32_t i = 0; i < all.size(); ++i) {
        auto pile = std::ranges::lower_bound(tops, all[i].fresh, {}, [&](uint32_t top) { return all[top].fresh; });
        before[i] = pile == tops.begin() ? -1 : int64_t{*(pile - 1)};
        if (pile == tops.end())
            tops.push_back(i);
        else
            *pile = i;
    }
    Pairs longest;
    for (int64_t i = tops.empty() ? -1 : int64_t{tops.back()}; i >= 0; i = before[static_cast<size_t>(i)])
        longest.push_back(all[static_cast<size_t>(i)]);
    std::ranges::reverse(longest);
    return longest;
}

}  // namespace

std::vector<IndexPair> AlignSingularLabels(std::span<const uint64_t> old, std::span<const uint64_t> fresh) {
    const Census census = CountLabels(old, fresh);
    Pairs unique;
    for (uint32_t i = 0; i < old.size(); ++i) {
        const Occurrences& found = census.at(old[i]);
        if (found.old == 1 && found.fresh == 1) unique.push_back({i, found.last.fresh});
    }
    return LongestIncrease(unique);
}

std::vector<IndexPair> AlignLabels(std::span<const uint64_t> old, std::span<const uint64_t> fresh) {
    Pairs pairs;
    const auto shorter = static_cast<uint32_t>(std::min(old.size(), fresh.size()));
    uint32_t head = 0, tail = 0;
    for (; head < shorter && old[head] == fresh[head]; ++head) pairs.push_back({head, head});
    while (tail < shorter - head && old[old.size() - tail - 1] == fresh[fresh.size() - tail - 1]) ++tail;
    const Labels oldRest = old.subspan(head, old.size() - head - tail);
    const Labels newRest = fresh.subspan(head, fresh.size() - head - tail);
    IndexPair at = {0, 0};
    for (IndexPair anchor : AlignSingularLabels(oldRest, newRest)) {
        AlignAll(oldRest.subspan(at.old, anchor.old - at.old), newRest.subspan(at.fresh, anchor.fresh - at.fresh),
                 {head + at.old, head + at.fresh}, &pairs);
        pairs.push_back({head + anchor.old, head + anchor.fresh});
        at = {anchor.old + 1, anchor.fresh + 1};
    }
    AlignAll(oldRest.subspan(at.old), newRest.subspan(at.fresh), {head + at.old, head + at.fresh}, &pairs);
    for (; tail > 0; --tail)
        pairs.push_back({static_cast<uint32_t>(old.size()) - tail, static_cast<uint32_t>(fresh.size()) - tail});
    return pairs;
}
