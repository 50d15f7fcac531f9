#include "editing/diff.h"

#include <algorithm>
#include <new>
#include <unordered_map>
#include <utility>

#include "editing/alignment.h"
#include "editing/block_labels.h"
#include "editing/field_changes.h"
#include "gif/source_bytes.h"

namespace {

constexpr int64_t kAlone = BlockDifference::kNone;

using Indexes = std::vector<uint32_t>;

// Fields alone make a control, and there are many alike: one of them is rather changed than moved.
bool IsWorthFollowing(const Block& block) {
    return block.kind != kHeaderBlock && block.kind != kControlBlock && block.kind != kLoopBlock;
}

bool IsAnyBlock(const Block&) {
    return true;
}

// Finds the partner of each block, from what is surely the same to what is only of the same kind. Pictures and texts
// that are there once hold the documents together; controls go with them.
class Matching {
public:
    Matching(const BlockList& old, const BlockList& fresh)
        : old_{old.All(), std::vector<Partner>(old.count)}, new_{fresh.All(), std::vector<Partner>(fresh.count)} {
        AlignSingular(LabelOfSource, IsWorthFollowing);
        Align(LabelOfSource);
        Align(LabelOfContent);
        FindMoved(LabelOfContent, IsWorthFollowing, true);
        Align(LabelOfBody);
        FindMoved(LabelOfBody, IsWorthFollowing, false);
        Align(LabelOfShape);
        Align(LabelOfKind);
        FindMoved(LabelOfContent, IsAnyBlock, true);
    }

    std::vector<BlockDifference> Differences() const;

private:
    using Labelling = uint64_t (*)(const Block& block);
    using Places = std::unordered_map<uint64_t, Indexes>;  // of blocks of each label
    struct Partner {
        int64_t index = kAlone;
        bool isMoved = false;
    };
    struct Side {
        std::span<const Block> blocks;
        std::vector<Partner> partners;

        size_t Count() const { return blocks.size(); }
        bool IsAlone(size_t i) const { return partners[i].index == kAlone; }
        bool IsInPlace(size_t i) const { return !IsAlone(i) && !partners[i].isMoved; }
        // Collects the wanted ones without a partner from `*at` to the next that is in its place, and goes there.
        Indexes TakeGap(size_t* at, bool (*isWanted)(const Block&)) const;
        Places PlacesOf(Labelling label, bool (*isWanted)(const Block&)) const;  // of those without a partner
        std::vector<uint64_t> LabelsOf(const Indexes& which, Labelling label) const;
    };

    void Join(uint32_t old, uint32_t fresh, bool isMoved) {
        old_.partners[old] = {fresh, isMoved};
        new_.partners[fresh] = {old, isMoved};
    }
    template <typename AlignRows>
    void AlignGaps(Labelling label, bool (*isWanted)(const Block&), AlignRows alignRows);
    void AlignSingular(Labelling label, bool (*isWanted)(const Block&)) {
        AlignGaps(label, isWanted, AlignSingularLabels);
    }
    void Align(Labelling label) { AlignGaps(label, IsAnyBlock, AlignLabels); }
    void FindMoved(Labelling label, bool (*isWanted)(const Block&), bool mayBeSeveral);

    Side old_, new_;
};

Indexes Matching::Side::TakeGap(size_t* at, bool (*isWanted)(const Block&)) const {
    Indexes gap;
    for (; *at < Count() && !IsInPlace(*at); ++*at)
        if (IsAlone(*at) && isWanted(blocks[*at])) gap.push_back(static_cast<uint32_t>(*at));
    return gap;
}

std::vector<uint64_t> Matching::Side::LabelsOf(const Indexes& which, Labelling label) const {
    std::vector<uint64_t> labels;
    labels.reserve(which.size());
    for (uint32_t index : which) labels.push_back(label(blocks[index]));
    return labels;
}

// Joins blocks of equal label in each gap between those that have a partner in their place.
template <typename AlignRows>
void Matching::AlignGaps(Labelling label, bool (*isWanted)(const Block&), AlignRows alignRows) {
    for (size_t oldAt = 0, newAt = 0; oldAt < old_.Count() || newAt < new_.Count(); ++oldAt, ++newAt) {
        const Indexes olds = old_.TakeGap(&oldAt, isWanted), news = new_.TakeGap(&newAt, isWanted);
        if (olds.empty() || news.empty()) continue;
        for (IndexPair pair : alignRows(old_.LabelsOf(olds, label), new_.LabelsOf(news, label)))
            Join(olds[pair.old], news[pair.fresh], false);
    }
}

Matching::Places Matching::Side::PlacesOf(Labelling label, bool (*isWanted)(const Block&)) const {
    Places places;
    for (uint32_t i = 0; i < Count(); ++i)
        if (IsAlone(i) && isWanted(blocks[i])) places[label(blocks[i])].push_back(i);
    return places;
}

// Joins blocks of equal label wherever they stand; of several alike the first with the first, or none.
void Matching::FindMoved(Labelling label, bool (*isWanted)(const Block&), bool mayBeSeveral) {
    const Places olds = old_.PlacesOf(label, isWanted);
    if (olds.empty()) return;
    for (const auto& [same, news] : new_.PlacesOf(label, isWanted)) {
        const auto found = olds.find(same);
        if (found == olds.end()) continue;
        if (!mayBeSeveral && (found->second.size() != 1 || news.size() != 1)) continue;
        const size_t pairs = std::min(found->second.size(), news.size());
        for (size_t i = 0; i < pairs; ++i) Join(found->second[i], news[i], true);
    }
}

std::vector<BlockDifference> Matching::Differences() const {
    std::vector<BlockDifference> all;
    size_t oldAt = 0;
    auto takeOut = [&] {  // what was taken out before the next block in its place
        for (; oldAt < old_.Count() && !old_.IsInPlace(oldAt); ++oldAt)
            if (old_.IsAlone(oldAt))
                all.push_back({static_cast<int64_t>(oldAt), kAlone, false, false, {}, BytesOf(old_.blocks[oldAt]), 0});
    };
    takeOut();
    for (size_t i = 0; i < new_.Count(); ++i) {
        const Partner& partner = new_.partners[i];
        const Block& fresh = new_.blocks[i];
        BlockDifference here = {partner.index, static_cast<int64_t>(i), partner.isMoved, false, {}, 0, BytesOf(fresh)};
        if (partner.index != kAlone) {
            const Block& old = old_.blocks[static_cast<size_t>(partner.index)];
            here.bytesBefore = BytesOf(old);
            here.fields = CompareFields(old, fresh);
            here.isEncodedDifferently = here.fields.empty() && !SameSourceBytes(old, fresh);
        }
        if (partner.index == kAlone || here.isMoved || here.isEncodedDifferently || !here.fields.empty())
            all.push_back(std::move(here));
        if (!new_.IsInPlace(i)) continue;
        ++oldAt;
        takeOut();
    }
    return all;
}

}  // namespace

bool CompareDocuments(const BlockList& old, const BlockList& fresh, DocumentDifferences* differences) {
    try {
        DocumentDifferences found;
        found.blocks = Matching(old, fresh).Differences();
        CompareFileBytes("before", old.before, fresh.before, &found.around);
        CompareFileBytes("after", old.after, fresh.after, &found.around);
        *differences = std::move(found);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}
