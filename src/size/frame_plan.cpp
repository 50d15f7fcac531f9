#include "size/frame_plan.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <new>

#include "platform/parallel.h"
#include "size/change.h"
#include "size/moments.h"

namespace {

constexpr size_t kMostWaysInHurry = 2;
constexpr size_t kMostWays = 4;     // of reaching a moment that are followed at a time
constexpr size_t kLongestLag = 12;  // frames that may be undecided
// Several threads look at so many moments at a time, fewer of large canvases, which take memory. Farther ahead it is
// less and less known which changes matter.
constexpr uint64_t kMomentsAhead = 6, kPixelsAhead = uint64_t{24} << 20;

// One way to show a moment: by a change of what was left before.
struct Way {
    std::shared_ptr<Way> before;
    uint8_t disposalBefore = kDisposeLeave;  // of the frame before,
    Rectangle boxBefore;                     // and its box: disposal 2 may have to clear more than it draws
    ChangeHandle change;
    MomentHandle moment;
    uint64_t bits = 0;        // guessed, of all frames up to this one
    bool isAsBefore = false;  // it draws on what the document draws on, too

    const Rectangle& Box() const { return change->Found().box; }
};
using WayHandle = std::shared_ptr<Way>;

// A frame that is decided, but not yet planned.
struct DecidedFrame {
    WayHandle way;
    uint8_t disposal = kDisposeLeave;
    Rectangle box;
};

// Which changes are looked into depends on what those before came to, so moments are taken in turn. But most changes
// can be foreseen: while a few moments are composed, all that may be asked of the few before is found by all threads.
class Planner {
public:
    Planner(const Animation& animation, const PlanOptions& options, FramePlan* plan)
        : animation_(animation), options_(options), plan_(*plan), reader_(animation, options, &plan->colours) {}

    PlanResult Run() {
        if (const PlanResult result = reader_.Open(); result != PlanResult::kDone) return result;
        canvas_ = reader_.Empty();
        std::vector<MomentHandle> moments, next;
        PlanResult result = reader_.Read(Ahead(), &moments);
        while (result == PlanResult::kDone && !moments.empty()) {
            result = LookAhead(moments, &next);
            if (result != PlanResult::kDone) break;
            for (size_t i = 0; i < moments.size(); ++i) Follow(moments[i], foreseen_[i]);
            if (options_.onRead) options_.onRead(moments.back()->lastFrame + size_t{1});
            moments.swap(next);
        }
        if (result == PlanResult::kDone) Finish();
        return result;
    }

private:
    using Changes = std::vector<ChangeHandle>;
    using Pieces = std::vector<std::function<void()>>;  // of work, each by itself

    size_t Ahead() const {
        if (options_.threads < 2) return 1;
        const uint64_t pixels = std::max<uint64_t>(animation_.Screen().Pixels(), 1);
        return static_cast<size_t>(std::clamp<uint64_t>(kPixelsAhead / pixels, 1, kMomentsAhead));
    }
    bool IsInHurry() const { return options_.effort == Effort::kFast; }

    PlanResult LookAhead(const std::vector<MomentHandle>& moments, std::vector<MomentHandle>* next);
    void Foresee(const std::vector<MomentHandle>& moments);
    bool MayHelp(const ChangeExtent& back, const ChangeExtent& plain) const;
    void LookInto(const ChangeExtent& plain, size_t colours, Change* change) const;
    void Rehearse(const std::vector<MomentHandle>& moments);
    static Changes Close(const Changes& changes);
    static Changes Lacking(Changes changes, bool (Change::*isKnown)() const);
    void Guess(const Changes& changes);
    void Measure(const Changes& changes);
    void DoAll(const Pieces& pieces);
    void AddDecided(Pieces* pieces);

    void Follow(const MomentHandle& moment, const Changes& foreseen);
    void ProposeAll(const MomentHandle& moment, const Changes& foreseen);
    void Propose(const WayHandle& before, uint8_t disposal, const ChangeHandle& change);
    void Propose(const WayHandle& before, uint8_t disposal, const Rectangle& boxBefore, const ChangeHandle& change);
    void ProposeClearing(const WayHandle& before, const Rectangle& cleared);
    bool WasCleared(const Rectangle& cleared) const;
    ChangeHandle ChangeBackFrom(const Way& way, const Changes& foreseen) const;
    ChangeHandle MakeChange(CanvasHandle from, const Rectangle& within) const;
    Changes GuessProposed();
    void MeasureProposed(const Changes& close);
    uint64_t Mended(uint64_t guess) const;
    void SumUp();
    uint64_t BitsBefore() const;
    void KeepBest();
    void Settle();
    static void PlanFrame(const DecidedFrame& decided, size_t colours, PlannedFrame* frame);
    void Finish();

    const Animation& animation_;
    const PlanOptions& options_;
    FramePlan& plan_;
    MomentReader reader_;
    CanvasHandle canvas_;              // of the moment followed last
    MomentHandle moment_;              // the one at hand
    std::vector<Changes> foreseen_;    // to each of the moments at hand, that from the moment before first
    std::vector<WayHandle> ways_;      // to the last moment, the best first
    std::vector<WayHandle> proposed_;  // to the one at hand
    size_t settled_ = 0;               // frames decided
    std::vector<DecidedFrame> decided_;
    double bitsOfGuess_ = 1;  // how many a guessed one has lately come to
    std::atomic<bool> outOfMemory_ = false;
};

// Does all of it, on several processors.
void Planner::DoAll(const Pieces& pieces) {
    RunInParallel(pieces.size(), options_.threads, [&](size_t i) {
        try {
            pieces[i]();
        } catch (const std::bad_alloc&) {
            outOfMemory_ = true;
        }
    });
    if (outOfMemory_) throw std::bad_alloc();
}

// Finds what will be asked of the changes to the moments, plans the frames that are decided, and reads what comes next.
PlanResult Planner::LookAhead(const std::vector<MomentHandle>& moments, std::vector<MomentHandle>* next) {
    Foresee(moments);
    const size_t colours = plan_.colours.Pixels().size();  // while further ones are numbered
    PlanResult result = PlanResult::kDone;
    Pieces pieces = {[&] { result = reader_.Read(Ahead(), next); }};
    AddDecided(&pieces);
    for (const Changes& changes : foreseen_)
        for (const ChangeHandle& change : changes)
            pieces.push_back([&, plain = &changes.front()->Found()] { LookInto(*plain, colours, change.get()); });
    DoAll(pieces);
    if (result == PlanResult::kDone && moments.size() > 1) Rehearse(moments);
    return result;
}

// The planning of all frames that are decided.
void Planner::AddDecided(Pieces* pieces) {
    const size_t planned = plan_.frames.size(), colours = plan_.colours.Pixels().size();
    plan_.frames.resize(planned + decided_.size());
    for (size_t i = 0; i < decided_.size(); ++i)
        pieces->push_back([frame = &plan_.frames[planned + i], decided = std::move(decided_[i]), colours] {
            PlanFrame(decided, colours, frame);
        });
    decided_.clear();
}

// The changes to each moment: from the one before, and from what the ways that lead there draw on.
void Planner::Foresee(const std::vector<MomentHandle>& moments) {
    struct Base {
        CanvasHandle canvas;
        Rectangle changed;  // since
    };
    std::vector<Base> bases;
    for (const WayHandle& way : ways_)
        if (way->change->From() != canvas_) bases.push_back({way->change->From(), way->Box()});
    foreseen_.clear();
    CanvasHandle canvas = canvas_;
    for (const MomentHandle& moment : moments) {
        Changes changes = {std::make_shared<Change>(canvas, moment->canvas, moment->difference)};
        for (Base& base : bases) {
            base.changed = Around(base.changed, moment->difference.box);
            changes.push_back(std::make_shared<Change>(base.canvas, moment->canvas, base.changed));
        }
        foreseen_.push_back(std::move(changes));
        if (moment->canvas == canvas) continue;
        bases.push_back({canvas, moment->difference.box});
        canvas = moment->canvas;
    }
}

// Whether going back before the last frame may be better than what that frame leaves.
bool Planner::MayHelp(const ChangeExtent& back, const ChangeExtent& plain) const {
    if (!back.vanishing.IsEmpty()) return false;
    return !IsInHurry() || back.pixels <= plain.pixels || !plain.vanishing.IsEmpty();
}

// In a hurry the plain change is often the only one, and need not be guessed.
void Planner::LookInto(const ChangeExtent& plain, size_t colours, Change* change) const {
    change->Compare();
    const bool isPlain = &change->Found() == &plain;
    if (isPlain ? !IsInHurry() && plain.vanishing.IsEmpty() : MayHelp(change->Found(), plain))
        change->Guess(colours, IsInHurry());
}

// Follows the moments by guesses alone, and measures what most likely has to be on the way. Where something is cleared
// it is not foreseen what that leaves.
void Planner::Rehearse(const std::vector<MomentHandle>& moments) {
    const std::vector<WayHandle> ways = ways_;
    Changes close;
    for (size_t i = 0; i < moments.size() && foreseen_[i].front()->Found().vanishing.IsEmpty(); ++i) {
        ProposeAll(moments[i], foreseen_[i]);
        const Changes more = GuessProposed();
        if (!IsInHurry()) close.insert(close.end(), more.begin(), more.end());
        SumUp();
        KeepBest();
    }
    ways_ = ways;
    Measure(close);
}

// Those of which guesses do not tell which is best.
Planner::Changes Planner::Close(const Changes& changes) {
    const uint64_t least = (*std::ranges::min_element(changes, {}, &Change::Guessed))->Guessed();
    Changes close;
    for (const ChangeHandle& change : changes)
        if (change->Guessed() <= least + least / 2 && change->Guessed() < kUnshowableBits) close.push_back(change);
    if (close.size() < 2) return {};
    return close;
}

// Each once, those left out of which it is known; the large ones first, so that no thread is left with one at the end.
Planner::Changes Planner::Lacking(Changes changes, bool (Change::*isKnown)() const) {
    std::erase_if(changes, [isKnown](const ChangeHandle& change) { return ((*change).*isKnown)(); });
    std::ranges::sort(changes, std::greater(),
                      [](const ChangeHandle& change) { return std::pair(change->Found().box.Pixels(), change); });
    changes.erase(std::unique(changes.begin(), changes.end()), changes.end());
    return changes;
}

void Planner::Guess(const Changes& changes) {
    const size_t colours = plan_.colours.Pixels().size();
    Pieces pieces;
    for (const ChangeHandle& change : Lacking(changes, &Change::IsGuessed))
        pieces.push_back([this, change, colours] { change->Guess(colours, IsInHurry()); });
    DoAll(pieces);
}

void Planner::Measure(const Changes& changes) {
    const size_t colours = plan_.colours.Pixels().size();
    Pieces pieces;
    for (const ChangeHandle& change : Lacking(changes, &Change::IsMeasured))
        pieces.push_back([change, colours] { change->Measure(colours); });
    DoAll(pieces);
}

void Planner::Propose(const WayHandle& before, uint8_t disposal, const ChangeHandle& change) {
    Propose(before, disposal, before ? before->Box() : Rectangle(), change);
}

void Planner::Propose(const WayHandle& before, uint8_t disposal, const Rectangle& boxBefore,
                      const ChangeHandle& change) {
    auto way = std::make_shared<Way>();
    way->before = before;
    way->disposalBefore = disposal;
    way->boxBefore = boxBefore;
    way->change = change;
    way->moment = moment_;
    way->isAsBefore =
        change->From() == moment_->drawnOn || (disposal == kDisposeBackground && boxBefore == moment_->cleared);
    proposed_.push_back(std::move(way));
}

// The frame before clears `cleared` when its time is over.
void Planner::ProposeClearing(const WayHandle& before, const Rectangle& cleared) {
    auto base = std::make_shared<NumberedCanvas>(*canvas_);
    base->Clear(cleared);
    const Rectangle within = Around(cleared, moment_->difference.box);
    Propose(before, kDisposeBackground, cleared, MakeChange(std::move(base), within));
}

ChangeHandle Planner::MakeChange(CanvasHandle from, const Rectangle& within) const {
    auto change = std::make_shared<Change>(std::move(from), moment_->canvas, within);
    change->Compare();
    return change;
}

// Whether the frame before clears in the document, too, and this and more.
bool Planner::WasCleared(const Rectangle& cleared) const {
    const Rectangle& old = moment_->cleared;
    return !old.IsEmpty() && old != cleared && Common(old, cleared) == cleared;
}

// Finds the ways to show the moment, and keeps the best.
void Planner::Follow(const MomentHandle& moment, const Changes& foreseen) {
    ProposeAll(moment, foreseen);
    const Changes close = GuessProposed();
    if (!IsInHurry()) MeasureProposed(close);
    SumUp();
    KeepBest();
    Settle();
    canvas_ = moment->canvas;
}

// Each of the ways so far, with each disposal.
void Planner::ProposeAll(const MomentHandle& moment, const Changes& foreseen) {
    moment_ = moment;
    proposed_.clear();
    const ChangeHandle& plain = foreseen.front();
    const Rectangle& vanishing = plain->Found().vanishing;
    if (vanishing.IsEmpty()) Propose(ways_.empty() ? nullptr : ways_.front(), kDisposeLeave, plain);
    for (const WayHandle& way : ways_) {
        const ChangeHandle back = ChangeBackFrom(*way, foreseen);
        if (MayHelp(back->Found(), plain->Found())) Propose(way, kDisposePrevious, back);
        if (vanishing.IsEmpty()) continue;
        const Rectangle cleared = Around(way->Box(), vanishing);
        ProposeClearing(way, cleared);
        if (WasCleared(cleared)) ProposeClearing(way, moment_->cleared);
    }
}

// The change to the moment at hand from what was there before the way's last frame.
ChangeHandle Planner::ChangeBackFrom(const Way& way, const Changes& foreseen) const {
    const CanvasHandle& from = way.change->From();
    const auto known = std::ranges::find(foreseen, from, &Change::From);
    return known != foreseen.end() ? *known : MakeChange(from, Around(way.Box(), moment_->difference.box));
}

// The bits of the image that the document has for the moment. They will do where what it is drawn on is the same.
uint64_t Planner::BitsBefore() const {
    const Frame& frame = animation_.Frames()[moment_->firstFrame];
    const uint64_t bytes = animation_.List().blocks[frame.block].source.bytes;
    return bytes ? bytes * 8 : UINT64_MAX;
}

// Guesses how many bits each proposed way takes. Returns the changes of which that does not tell which is best. Where
// there is but one way, it does not matter.
Planner::Changes Planner::GuessProposed() {
    if (proposed_.size() < 2) return {};
    Changes changes;
    for (const WayHandle& way : proposed_) changes.push_back(way->change);
    Guess(changes);
    for (const WayHandle& way : proposed_) way->bits = Mended(way->change->Guessed());
    return Close(changes);
}

uint64_t Planner::Mended(uint64_t guess) const {
    if (IsInHurry() || guess >= kUnshowableBits) return guess;
    return static_cast<uint64_t>(static_cast<double>(guess) * bitsOfGuess_);
}

// What changes come to when measured, compared with what was guessed, mends the guesses of the others.
void Planner::MeasureProposed(const Changes& close) {
    Measure(close);
    uint64_t guessed = 0, found = 0;
    for (const ChangeHandle& change : close) {
        guessed += change->Guessed();
        found += change->Measured();
    }
    if (guessed && found) bitsOfGuess_ = static_cast<double>(found) / static_cast<double>(guessed);
    for (const WayHandle& way : proposed_) {
        const bool isMeasured = std::ranges::find(close, way->change) != close.end();
        if (proposed_.size() > 1) way->bits = isMeasured ? way->change->Measured() : Mended(way->change->Guessed());
    }
}

// Turns the bits of the proposed frames into those of all frames up to them.
void Planner::SumUp() {
    constexpr uint64_t kBitsOfFrame = uint64_t{8} * 20;
    for (const WayHandle& way : proposed_) {
        if (way->isAsBefore && !IsInHurry()) way->bits = std::min(way->bits, BitsBefore());
        if (way->before) way->bits += way->before->bits + kBitsOfFrame;
    }
}

// Of ways that leave the same to the frames behind, the best; and of those the best few.
void Planner::KeepBest() {
    std::stable_sort(proposed_.begin(), proposed_.end(),
                     [](const WayHandle& a, const WayHandle& b) { return a->bits < b->bits; });
    ways_.clear();
    for (const WayHandle& way : proposed_) {
        const bool isKnown = std::ranges::any_of(
            ways_, [&](const WayHandle& known) { return known->change->From() == way->change->From(); });
        if (!isKnown && ways_.size() < (IsInHurry() ? kMostWaysInHurry : kMostWays)) ways_.push_back(way);
    }
}

Way* AncestorAt(Way* way, size_t moment) {
    while (way->moment->number > moment) way = way->before.get();
    return way;
}

// Decides the frames on which all ways agree; too many undecided ones are decided by the best way.
void Planner::Settle() {
    while (settled_ < moment_->number) {
        Way* const best = AncestorAt(ways_.front().get(), settled_ + 1);
        const auto isOther = [&](const WayHandle& way) { return AncestorAt(way.get(), settled_ + 1) != best; };
        if (moment_->number + 1 - settled_ > kLongestLag) std::erase_if(ways_, isOther);
        if (std::ranges::any_of(ways_, isOther)) return;
        // Nobody looks behind it any more.
        decided_.push_back({std::move(best->before), best->disposalBefore, best->boxBefore});
        ++settled_;
    }
}

void Planner::PlanFrame(const DecidedFrame& decided, size_t colours, PlannedFrame* frame) {
    const Moment& moment = *decided.way->moment;
    frame->firstFrame = moment.firstFrame;
    frame->lastFrame = moment.lastFrame;
    frame->delay = moment.delay;
    frame->disposal = decided.disposal;
    frame->box = decided.box.IsEmpty() ? Rectangle{0, 0, 1, 1} : decided.box;
    TakePixels(*decided.way->change->From(), *moment.canvas, colours, frame);
}

void Planner::Finish() {
    ways_.resize(1);
    Settle();
    decided_.push_back({ways_.front(), kDisposeLeave, ways_.front()->Box()});
    Pieces pieces;
    AddDecided(&pieces);
    DoAll(pieces);
    PlannedFrame& last = plan_.frames.back();
    last.isLast = true;
    const uint8_t disposal = animation_.Frames().back().disposal;
    if (disposal == kDisposeBackground || disposal == kDisposePrevious) last.disposal = disposal;
}

}  // namespace

PlanResult PlanFrames(const Animation& animation, const PlanOptions& options, FramePlan* plan) {
    return Planner(animation, options, plan).Run();
}
