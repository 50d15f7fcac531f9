// A change from one canvas to another, and what it takes to write it as a frame.
#pragma once

#include <memory>
#include <optional>

#include "size/numbered_canvas.h"

constexpr uint64_t kUnshowableBits = uint64_t{1} << 48;  // bits

// What is asked of a change is found once. All may throw std::bad_alloc; one change is for one thread at a time.
class Change {
public:
    // The two differ only in `within`.
    Change(CanvasHandle from, CanvasHandle to, const Rectangle& within)
        : from_(std::move(from)), to_(std::move(to)), within_(within) {}
    // They were compared already.
    Change(CanvasHandle from, CanvasHandle to, const ChangeExtent& found)
        : from_(std::move(from)), to_(std::move(to)), found_(found) {}

    const CanvasHandle& From() const { return from_; }
    const CanvasHandle& To() const { return to_; }

    void Compare();
    // Once they were compared.
    const ChangeExtent& Found() const { return *found_; }

    // About how many bits the codes take, with what stays transparent or, unless in a hurry, in its own colours, as the
    // one or the other looks better; kUnshowableBits where it has more colours than fit into a palette. `colours` is
    // the number of colours that there are.
    void Guess(size_t colours, bool inHurry);
    // Once it was guessed.
    uint64_t Guessed() const { return *guessed_; }
    bool IsGuessed() const { return guessed_.has_value(); }

    // The bits of the codes found in a hurry in the manner that looked better, once it was guessed.
    void Measure(size_t colours);
    uint64_t Measured() const { return *measured_; }
    bool IsMeasured() const { return measured_.has_value(); }

private:
    uint64_t GuessBits(bool clears) const;
    bool HasTooManyColours(size_t colours) const;

    CanvasHandle from_, to_;
    Rectangle within_;
    bool clears_ = true;  // what stays is taken as transparent
    std::optional<ChangeExtent> found_;
    std::optional<uint64_t> guessed_, measured_;
};
using ChangeHandle = std::shared_ptr<Change>;
