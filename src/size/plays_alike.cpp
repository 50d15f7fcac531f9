#include "size/plays_alike.h"

#include <algorithm>
#include <atomic>
#include <compare>
#include <cstring>

#include "animation/stage.h"
#include "platform/parallel.h"
#include "size/colour_distance.h"

namespace {

bool SameRows(const CanvasView& a, const CanvasView& b, const Rectangle& area) {
    const auto bytes = static_cast<size_t>(area.Width()) * sizeof(uint32_t);
    for (int y = area.top; y < area.bottom; ++y)
        if (memcmp(a.Row(y) + area.left, b.Row(y) + area.left, bytes) != 0) return false;
    return true;
}

// Hundredths since the start: by the file's delays, and as browsers play them.
struct Clock {
    uint64_t delay = 0, played = 0;
};

[[nodiscard]] bool OpenToPlay(const BlockList& list, Animation* animation) {
    return animation->Open(list, Texts::kLeftOut) && FitsCanvas(*animation);
}

// Shows what is on the stage moment by moment, frames that show the same taken together. It may look at some rows of
// the screen alone: its moments are then those of what shows there.
class Player {
public:
    explicit Player(const Animation& animation) : animation_(animation) {}

    [[nodiscard]] bool Open(int top, int bottom) {
        if (!stage_.OpenRows(animation_, top, bottom)) return false;
        held_ = AllocateScratchArray<uint32_t>(static_cast<uint64_t>(animation_.Width()) *
                                               static_cast<uint64_t>(bottom - top));
        return static_cast<bool>(held_);
    }
    [[nodiscard]] bool Open() { return Open(0, animation_.Height()); }

    // Goes to the next moment; HasEnded tells when there is none. False when memory runs out.
    [[nodiscard]] bool Next() {
        changed_ = {};
        delay_ = played_ = 0;
        hasEnded_ = next_ == animation_.Frames().size();
        if (hasEnded_) return true;
        if (!isAhead_ && !Show()) return false;
        isAhead_ = false;
        Hold();
        for (Add(); next_ < animation_.Frames().size(); Add()) {
            if (!Show()) return false;
            isAhead_ = !SameRows(stage_.Canvas(), Held(), fresh_);
            if (isAhead_) return true;
        }
        return true;
    }
    // The same; the clock goes on to the end of the moment.
    [[nodiscard]] bool Advance(Clock* clock) {
        if (!Next()) return false;
        clock->delay += delay_;
        clock->played += played_;
        return true;
    }
    bool HasEnded() const { return hasEnded_; }

    CanvasView Held() const {
        CanvasView held = stage_.Canvas();
        held.pixels = held_.get();
        return held;
    }
    Rectangle Changed() const { return changed_; }  // against the moment before
    uint64_t Delay() const { return delay_; }
    uint64_t Played() const { return played_; }

private:
    [[nodiscard]] bool Show() {
        if (!stage_.Show(next_)) return false;
        fresh_ = stage_.Changed();
        return true;
    }
    void Hold() {
        for (int y = fresh_.top; y < fresh_.bottom; ++y)
            memcpy(Held().Row(y) + fresh_.left, stage_.Canvas().Row(y) + fresh_.left,
                   static_cast<size_t>(fresh_.Width()) * sizeof(uint32_t));
        changed_ = fresh_;
    }
    void Add() {
        const Frame& frame = animation_.Frames()[next_++];
        delay_ += frame.delay;
        played_ += frame.length;
    }

    const Animation& animation_;
    Stage stage_;
    std::unique_ptr<uint32_t[]> held_;
    Rectangle fresh_;       // what the frame on the stage changed
    Rectangle changed_;     // what the moment changed
    uint32_t next_ = 0;     // the frame behind those that belong to the moment
    bool isAhead_ = false;  // it is on the stage already
    bool hasEnded_ = false;
    uint64_t delay_ = 0, played_ = 0;
};

bool SameMoment(const Player& one, const Player& other) {
    if (one.HasEnded() || other.HasEnded()) return one.HasEnded() == other.HasEnded();
    return one.Delay() == other.Delay() && one.Played() == other.Played() &&
           SameRows(one.Held(), other.Held(), Around(one.Changed(), other.Changed()));
}

// Sums up differences.
class LossCount {
public:
    // Adds what shows for `time`. Returns whether all pixels are at most `most` apart.
    bool Add(const CanvasView& a, const CanvasView& b, uint64_t time, int most) {
        uint64_t sum = 0;
        for (int y = 0; y < a.height; ++y)
            for (int x = 0; x < a.width; ++x) {
                const int distance = ColourDistance(a.Row(y)[x], b.Row(y)[x]);
                largest_ = std::max(largest_, distance);
                sum += static_cast<uint64_t>(distance);
            }
        sum_ += static_cast<double>(sum) * static_cast<double>(time);
        pixels_ += static_cast<double>(a.width) * a.height * static_cast<double>(time);
        return largest_ <= most;
    }
    Loss Total() const { return {largest_, pixels_ > 0 ? sum_ / pixels_ : 0}; }

private:
    int largest_ = 0;
    double sum_ = 0, pixels_ = 0;
};

bool SameForm(const Animation& one, const Animation& other) {
    return one.Screen() == other.Screen() && one.Repeats() == other.Repeats();
}

// What rows `top` to `bottom` - 1 show.
Likeness RowsPlayAlike(const Animation& first, const Animation& second, int top, int bottom,
                       const LookOptions& options) {
    Player one(first), other(second);
    if (!one.Open(top, bottom) || !other.Open(top, bottom)) return Likeness::kNoMemory;
    do {
        if (options.StopRequested()) return Likeness::kStopped;
        if (!one.Next() || !other.Next()) return Likeness::kNoMemory;
        if (!SameMoment(one, other)) return Likeness::kDifferent;
    } while (!one.HasEnded());
    return Likeness::kAlike;
}

// How many rows are looked at in one piece. All canvases of a piece stay in a processor's cache.
int RowsAtATime(const Rectangle& screen) {
    constexpr int kPixels = 50'000, kFewestRows = 16;
    return std::max(kPixels / std::max(screen.Width(), 1), kFewestRows);
}

}  // namespace

Likeness PlaysNearly(const BlockList& first, const BlockList& second, int most, Loss* loss,
                     const LookOptions& options) {
    Animation exact, near;
    if (!OpenToPlay(first, &exact) || !OpenToPlay(second, &near)) return Likeness::kNoMemory;
    if (!SameForm(exact, near)) return Likeness::kDifferent;
    Player one(exact), other(near);
    if (!one.Open() || !other.Open()) return Likeness::kNoMemory;
    LossCount count;
    Clock clock, otherClock;  // at the ends of what both show
    uint64_t now = 0;
    for (;;) {
        if (options.StopRequested()) return Likeness::kStopped;
        const std::strong_ordering order = clock.played <=> otherClock.played;
        // What ends first by one clock does so by the other, too, or at the same time.
        if (order != clock.delay <=> otherClock.delay && clock.delay != otherClock.delay) return Likeness::kDifferent;
        if (std::is_lteq(order) && !one.Advance(&clock)) return Likeness::kNoMemory;
        if (std::is_gteq(order) && !other.Advance(&otherClock)) return Likeness::kNoMemory;
        if (one.HasEnded() || other.HasEnded()) break;
        const uint64_t until = std::min(clock.played, otherClock.played);
        if (!count.Add(one.Held(), other.Held(), until - now, most)) return Likeness::kDifferent;
        now = until;
    }
    if (!one.HasEnded() || !other.HasEnded()) return Likeness::kDifferent;
    *loss = count.Total();
    return Likeness::kAlike;
}

// What shows in some rows, and for how long, does not depend on the others; every moment of the whole begins where one
// of some rows does. So pieces of the screen may be looked at by themselves.
Likeness PlaysAlike(const BlockList& first, const BlockList& second, const LookOptions& options) {
    Animation one, other;
    if (!OpenToPlay(first, &one) || !OpenToPlay(second, &other)) return Likeness::kNoMemory;
    if (!SameForm(one, other)) return Likeness::kDifferent;
    const int height = one.Height(), rows = RowsAtATime(one.Screen());
    const auto pieces = static_cast<size_t>(std::max((height + rows - 1) / rows, 1));
    std::atomic<Likeness> result = Likeness::kAlike;
    RunInParallel(pieces, options.threads, [&](size_t piece) {
        if (result != Likeness::kAlike) return;
        const int top = static_cast<int>(piece) * rows;
        const Likeness found = RowsPlayAlike(one, other, top, std::min(top + rows, height), options);
        if (found != Likeness::kAlike) result = found;
    });
    return result;
}
