#include "editing/history.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <new>
#include <unordered_map>
#include <utility>

#include "gif/source_bytes.h"

namespace {

// How far is looked for where two lists meet again. Farther apart, blocks count as exchanged for others.
constexpr uint32_t kMostLookAhead = 64;

bool SameName(const Block& a, const Block& b) {
    return a.name == b.name || (a.name && b.name && GetBlockName(a) == GetBlockName(b));
}

bool SameSource(const Block& a, const Block& b) {
    return a.aux == b.aux && a.isCutOff == b.isCutOff && a.source.start == b.source.start &&
           a.source.stray == b.source.stray && a.source.bytes == b.source.bytes;
}

bool SamePalette(const Palette& a, const Palette& b) {
    return a.Colours() == b.Colours() || memcmp(a.Colours(), b.Colours(), kPaletteBytes) == 0;
}

// Whether one may stand for the other, in the list and in every file that is written of it.
bool SameBlock(const Block& a, const Block& b) {
    return SameSource(a, b) && SameContent(a, b) && SamePalette(a.palette, b.palette) && SameName(a, b) &&
           !a.data == !b.data;
}

bool SameBytes(const FileBytes& a, const FileBytes& b) {
    return a.memory == b.memory && a.start == b.start && a.bytes == b.bytes;
}

// The next place, `oldAt` and `newAt`, where both lists go on alike, or their ends. At the same distance blocks count
// as changed sooner than as inserted or deleted: animations are full of control blocks that are alike.
void FindMeeting(std::span<const Block> old, std::span<const Block> fresh, uint32_t* oldAt, uint32_t* newAt) {
    const auto oldLeft = static_cast<uint32_t>(old.size()) - *oldAt;
    const auto newLeft = static_cast<uint32_t>(fresh.size()) - *newAt;
    const uint32_t farthest = std::min(kMostLookAhead, std::max(oldLeft, newLeft));
    for (uint32_t ahead = 1; ahead <= farthest; ++ahead) {
        if (ahead < oldLeft && ahead < newLeft && SameBlock(old[*oldAt + ahead], fresh[*newAt + ahead])) {
            *oldAt += ahead;
            *newAt += ahead;
            return;
        }
        if (ahead < oldLeft && newLeft > 0 && SameBlock(old[*oldAt + ahead], fresh[*newAt])) {
            *oldAt += ahead;
            return;
        }
        if (ahead < newLeft && oldLeft > 0 && SameBlock(old[*oldAt], fresh[*newAt + ahead])) {
            *newAt += ahead;
            return;
        }
    }
    if (oldLeft == 0 || newLeft == 0) {
        *oldAt += oldLeft;
        *newAt += newLeft;
    } else {
        ++*oldAt;
        ++*newAt;
    }
}

// Adds up what blocks hold in memory, every piece once. What stands on both sides of a step, taken out here and put in
// there, is in the document and costs nothing.
class Costs {
public:
    enum Side : uint8_t { kTaken = 1, kPut = 2 };

    void Add(std::span<const Block> blocks, Side side) {
        for (const Block& block : blocks) {
            bytes_ += sizeof(Block) + block.source.bytes;
            AddPiece(block.data.Id(), MemorySize(block.data), side);
            if (block.palette.HasColours()) AddPiece(block.palette.Colours(), kPaletteBytes, side);
        }
    }
    uint64_t Sum() const {
        uint64_t sum = bytes_;
        for (const auto& [id, piece] : pieces_)
            if (piece.sides != (kTaken | kPut)) sum += piece.bytes;
        return sum;
    }

private:
    struct Piece {
        size_t bytes;
        unsigned sides;
    };

    void AddPiece(const void* id, size_t bytes, Side side) {
        if (id) pieces_.try_emplace(id, Piece{bytes, 0}).first->second.sides |= side;
    }

    uint64_t bytes_ = 0;
    std::unordered_map<const void*, Piece> pieces_;
};

}  // namespace

History::Step History::MakeStep(const std::string& name, const BlockList& before, const BlockList& after) {
    Step step = {name, {}, {before.flags, before.before, before.after}, {after.flags, after.before, after.after}, 0};
    std::span<const Block> old = before.All(), fresh = after.All();
    bool isOpen = false;  // the last hunk goes on
    for (uint32_t oldAt = 0, newAt = 0; oldAt < old.size() || newAt < fresh.size();) {
        if (oldAt < old.size() && newAt < fresh.size() && SameBlock(old[oldAt], fresh[newAt])) {
            ++oldAt, ++newAt;
            isOpen = false;
            continue;
        }
        uint32_t oldEnd = oldAt, newEnd = newAt;
        FindMeeting(old, fresh, &oldEnd, &newEnd);
        if (!isOpen) step.hunks.push_back({oldAt, newAt, {}, {}});
        Hunk& hunk = step.hunks.back();
        std::ranges::copy(old.subspan(oldAt, oldEnd - oldAt), std::back_inserter(hunk.taken));
        std::ranges::copy(fresh.subspan(newAt, newEnd - newAt), std::back_inserter(hunk.put));
        oldAt = oldEnd, newAt = newEnd;
        isOpen = true;
    }
    Costs costs;
    for (const Hunk& hunk : step.hunks) {
        costs.Add(hunk.taken, Costs::kTaken);
        costs.Add(hunk.put, Costs::kPut);
    }
    step.bytes = costs.Sum();
    return step;
}

void History::Record(const std::string& name, const BlockList& before, const BlockList& after) {
    try {
        Step step = MakeStep(name, before, after);
        const ListState &old = step.old, &fresh = step.fresh;
        if (step.hunks.empty() && old.flags == fresh.flags && SameBytes(old.before, fresh.before) &&
            SameBytes(old.after, fresh.after))
            return;
        while (steps_.size() > done_) {
            bytes_ -= steps_.back().bytes;
            steps_.pop_back();
        }
        if (saved_ > static_cast<int64_t>(done_)) saved_ = -1;
        bytes_ += step.bytes;
        steps_.push_back(std::move(step));
        ++done_;
        KeepToLimit();
    } catch (const std::bad_alloc&) {
        Forget();
    }
}

void History::KeepToLimit() {
    size_t gone = 0;
    while (bytes_ > mostBytes_ && steps_.size() - gone > 1) bytes_ -= steps_[gone++].bytes;
    steps_.erase(steps_.begin(), steps_.begin() + static_cast<std::ptrdiff_t>(gone));
    done_ -= gone;
    saved_ = std::max<int64_t>(saved_ - static_cast<int64_t>(gone), -1);
}

void History::Forget() {
    steps_.clear();
    done_ = 0;
    bytes_ = 0;
    saved_ = -1;
}

void History::Clear() {
    Forget();
    saved_ = 0;
}

// Builds the other list beside this one, so that nothing is half done.
bool History::Apply(const Step& step, bool forth, BlockList* list) {
    BlockList made;
    if (!CreateBlockList(&made)) return false;
    std::span<const Block> from = list->All();
    size_t at = 0;
    auto copy = [&](std::span<const Block> blocks) {
        return std::ranges::all_of(blocks, [&](const Block& block) { return AppendBlock(&made, block); });
    };
    for (const Hunk& hunk : step.hunks) {
        const size_t start = forth ? hunk.oldAt : hunk.newAt;
        if (start < at || start + (forth ? hunk.taken : hunk.put).size() > from.size()) return false;
        if (!copy(from.subspan(at, start - at)) || !copy(forth ? hunk.put : hunk.taken)) return false;
        at = start + (forth ? hunk.taken : hunk.put).size();
    }
    if (!copy(from.subspan(at))) return false;
    const ListState& state = forth ? step.fresh : step.old;
    made.flags = state.flags;
    made.before = state.before;
    made.after = state.after;
    RenumberBlocks(&made);
    *list = std::move(made);
    return true;
}

ChangedPlace History::PlaceOf(const Step& step, bool forth) {
    if (step.hunks.empty()) return {};
    auto found =
        std::ranges::find_if(step.hunks, [](const Hunk& hunk) { return hunk.taken.size() != hunk.put.size(); });
    const Hunk& hunk = found == step.hunks.end() ? step.hunks.front() : *found;
    const auto old = static_cast<uint32_t>(hunk.taken.size()), fresh = static_cast<uint32_t>(hunk.put.size());
    return forth ? ChangedPlace{hunk.newAt, old, fresh} : ChangedPlace{hunk.oldAt, fresh, old};
}

bool History::Undo(BlockList* list, ChangedPlace* changed) {
    if (done_ == 0 || !Apply(steps_[done_ - 1], false, list)) return false;
    --done_;
    if (changed) *changed = PlaceOf(steps_[done_], false);
    return true;
}

bool History::Redo(BlockList* list, ChangedPlace* changed) {
    if (done_ == steps_.size() || !Apply(steps_[done_], true, list)) return false;
    if (changed) *changed = PlaceOf(steps_[done_], true);
    ++done_;
    return true;
}
