// The way back: what every change of a document did to it, so that it can be undone and done again.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gif/block_list.h"

constexpr uint64_t kUsualHistoryBytes = uint64_t{256} << 20;

// Where a step back or forth has changed the document: from block `at` on, `taken` blocks gave way to `put` others. Of
// several such places it is one where the number of blocks is another now, or else the first.
struct ChangedPlace {
    uint32_t at = 0, taken = 0, put = 0;
};

// Remembers the steps of one document. A step keeps the blocks that it took out and those that it put in, which share
// their texts, pixels and colours with the document: it costs what was changed, not what there is.
class History {
public:
    // `mostBytes`: what the steps may hold beside the document; the oldest ones go first, the newest one always stays.
    explicit History(uint64_t mostBytes = kUsualHistoryBytes) noexcept : mostBytes_(mostBytes) {}

    // Gives it another limit, which the next step heeds.
    void LimitTo(uint64_t mostBytes) { mostBytes_ = mostBytes; }

    // Takes down that the document `before` became `after` by what `name` says ("Delete 3 blocks"). Nothing is taken
    // down when both are the same. What had been undone can't be done again then. Without memory for the step all
    // steps are forgotten, as none before it would fit the document any more.
    void Record(const std::string& name, const BlockList& before, const BlockList& after);

    // The names of the steps that Undo and Redo would take; null when there is none.
    const std::string* UndoName() const { return done_ ? &steps_[done_ - 1].name : nullptr; }
    const std::string* RedoName() const { return done_ < steps_.size() ? &steps_[done_].name : nullptr; }

    // Takes the document, which is as the last step left it, a step back or forth, and tells where if `changed` is not
    // null. False, with nothing changed, when there is no such step or memory runs out.
    [[nodiscard]] bool Undo(BlockList* list, ChangedPlace* changed = nullptr);
    [[nodiscard]] bool Redo(BlockList* list, ChangedPlace* changed = nullptr);

    // The document is now as its file has it; and whether it is so again, by whatever way.
    void MarkSaved() { saved_ = static_cast<int64_t>(done_); }
    bool IsSaved() const { return saved_ == static_cast<int64_t>(done_); }

    // Forgets all, for another document, which is as its file has it.
    void Clear();

    // Forgets all of a document that is not as a file has it, or of which a change is not known.
    void Forget();

    uint64_t Bytes() const { return bytes_; }
    size_t Steps() const { return steps_.size(); }

private:
    // At index `at` of the list that comes out, `taken` blocks of the other one stood.
    struct Hunk {
        uint32_t oldAt, newAt;
        std::vector<Block> taken, put;
    };
    struct ListState {
        uint16_t flags;
        FileBytes before, after;
    };
    struct Step {
        std::string name;
        std::vector<Hunk> hunks;  // in the order of the list
        ListState old, fresh;
        uint64_t bytes = 0;
    };

    static Step MakeStep(const std::string& name, const BlockList& before, const BlockList& after);
    static bool Apply(const Step& step, bool forth, BlockList* list);
    static ChangedPlace PlaceOf(const Step& step, bool forth);
    void KeepToLimit();

    uint64_t mostBytes_;
    std::vector<Step> steps_;
    size_t done_ = 0;    // steps that are in the document; those behind were undone
    int64_t saved_ = 0;  // `done_` of the saved document; none when that can't be reached
    uint64_t bytes_ = 0;
};
