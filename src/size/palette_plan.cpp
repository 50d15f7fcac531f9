#include "size/palette_plan.h"

#include <algorithm>

#include "gif/lzw_limits.h"

namespace {

// A set of colours that knows what a frame would add to it.
class GrowingSet {
public:
    explicit GrowingSet(size_t colours) : has_(colours) {}

    size_t Lacking(const std::vector<ColourId>& more) const {
        return static_cast<size_t>(std::ranges::count_if(more, [this](ColourId id) { return !has_[id]; }));
    }
    void Add(const std::vector<ColourId>& more) {
        for (ColourId id : more) {
            if (has_[id]) continue;
            has_[id] = true;
            inOrder_.push_back(id);
        }
    }
    const std::vector<ColourId>& InOrder() const { return inOrder_; }

private:
    std::vector<bool> has_;
    std::vector<ColourId> inOrder_;
};

// Adds frames' colours to the set up to `room` of them, those first that add the fewest for their size. Frames whose
// colours are in leave `left`.
void Fill(const FramePlan& plan, size_t room, std::vector<size_t>* left, GrowingSet* set) {
    for (;;) {
        double best = -1;
        size_t chosen = 0;
        for (size_t i = 0; i < left->size();) {
            const PlannedFrame& frame = plan.frames[(*left)[i]];
            const size_t lacking = set->Lacking(frame.needed);
            if (lacking == 0) {
                left->erase(left->begin() + static_cast<ptrdiff_t>(i));
                continue;
            }
            const double worth = static_cast<double>(frame.ids.size()) / static_cast<double>(lacking * lacking);
            if (set->InOrder().size() + lacking <= room && worth > best) {
                best = worth;
                chosen = i;
            }
            ++i;
        }
        if (best < 0) return;
        set->Add(plan.frames[(*left)[chosen]].needed);
    }
}

std::vector<size_t> AllFrames(const FramePlan& plan) {
    std::vector<size_t> all(plan.frames.size());
    for (size_t i = 0; i < all.size(); ++i) all[i] = i;
    return all;
}

// What a frame's own palette takes when the global one does not have its colours.
size_t LocalBytes(const PlannedFrame& frame) {
    return 3u << DepthForColours(frame.needed.size() + 1);
}

}  // namespace

int DepthForColours(size_t colours) {
    int depth = 1;
    while (size_t{1} << depth < colours) ++depth;
    return depth;
}

PaletteIds ChooseGlobalPalette(const FramePlan& plan, const std::vector<ColourId>& wanted) {
    GrowingSet all(plan.colours.Pixels().size());
    all.Add(wanted);
    std::vector<size_t> left = AllFrames(plan);
    Fill(plan, kMostColours, &left, &all);
    // With the colours chosen, the same again in small steps gives the order: each code size has one index free for
    // what is transparent.
    GrowingSet ordered(plan.colours.Pixels().size());
    std::vector<size_t> covered;
    size_t saved = 0;
    for (size_t i = 0; i < plan.frames.size(); ++i) {
        if (all.Lacking(plan.frames[i].needed) > 0) continue;
        covered.push_back(i);
        saved += LocalBytes(plan.frames[i]);
    }
    const bool isNeeded = !wanted.empty() || saved > (3u << DepthForColours(all.InOrder().size()));
    if (!isNeeded) return {};
    for (int bits = kLeastCodeSize; bits <= kMostCodeSize; ++bits)
        Fill(plan, (size_t{1} << bits) - 1, &covered, &ordered);
    ordered.Add(all.InOrder());
    return ordered.InOrder();
}
