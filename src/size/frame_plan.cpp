#include "size/frame_plan.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <iterator>
#include <new>

#include "animation/stage.h"
#include "gif/descriptor.h"
#include "platform/parallel.h"
#include "size/code_guess.h"
#include "size/colour_distance.h"

namespace {

constexpr uint32_t kMostDelay = 0xFFFF;
constexpr uint64_t kCantBeShown = uint64_t{1} << 48;  // bits
constexpr size_t kMostWaysInHurry = 2;
constexpr size_t kMostWays = 4;     // of reaching a moment that are followed at a time
constexpr size_t kLongestLag = 12;  // frames that may be undecided

// A canvas in numbers. Copies share what they have in common, in bands of rows.
class Ids {
public:
    Ids(int width, int height) : width_(static_cast<size_t>(width)) {
        const auto empty = std::make_shared<Band>(width_ * kBandRows);
        bands_.assign(static_cast<size_t>((height + kBandRows - 1) / kBandRows), empty);
    }
    const ColourId* Row(int y) const { return &(*bands_[BandOf(y)])[PlaceOf(y)]; }
    // The row to be written.
    ColourId* OwnRow(int y) {
        std::shared_ptr<Band>& band = bands_[BandOf(y)];
        if (band.use_count() > 1) band = std::make_shared<Band>(*band);
        return &(*band)[PlaceOf(y)];
    }

private:
    using Band = std::vector<ColourId>;
    static constexpr int kBandRows = 8;

    static size_t BandOf(int y) { return static_cast<size_t>(y / kBandRows); }
    size_t PlaceOf(int y) const { return static_cast<size_t>(y % kBandRows) * width_; }

    size_t width_;
    std::vector<std::shared_ptr<Band>> bands_;
};
using Canvas = std::shared_ptr<const Ids>;

// What differs between two canvases.
struct Difference {
    Rectangle box;
    Rectangle vanishing;  // where something becomes transparent
    uint64_t pixels = 0;
};

// Takes off the ends of a stretch of two rows what is the same in both. They must differ somewhere in it.
template <typename Pixel>
void Narrow(const Pixel* a, const Pixel* b, int* left, int* right) {
    constexpr int kStep = 32 / sizeof(Pixel);  // compared at a time
    const auto isSame = [a, b](int x) { return memcmp(a + x, b + x, kStep * sizeof(Pixel)) == 0; };
    while (*right - *left > kStep && isSame(*left)) *left += kStep;
    while (a[*left] == b[*left]) ++*left;
    while (*right - *left > kStep && isSame(*right - kStep)) *right -= kStep;
    while (a[*right - 1] == b[*right - 1]) --*right;
}

void TakeRow(const ColourId* from, const ColourId* to, const Rectangle& within, int y, Difference* found) {
    const auto width = static_cast<size_t>(within.Width());
    if (from == to) return;  // shared
    if (memcmp(from + within.left, to + within.left, width * sizeof *from) == 0) return;
    int left = within.left, right = within.right;
    Narrow(from, to, &left, &right);
    found->box = Around(found->box, {left, y, right, y + 1});
    uint64_t pixels = 0, vanishing = 0;
    for (int x = left; x < right; ++x) {
        pixels += from[x] != to[x];
        vanishing += from[x] != to[x] && to[x] == kTransparentId;
    }
    found->pixels += pixels;
    if (vanishing == 0) return;
    const auto vanishes = [&](int x) { return from[x] != to[x] && to[x] == kTransparentId; };
    while (!vanishes(left)) ++left;
    while (!vanishes(right - 1)) --right;
    found->vanishing = Around(found->vanishing, {left, y, right, y + 1});
}

Difference Compare(const Ids& from, const Ids& to, const Rectangle& within) {
    Difference found;
    if (within.IsEmpty()) return found;
    for (int y = within.top; y < within.bottom; ++y) TakeRow(from.Row(y), to.Row(y), within, y, &found);
    return found;
}

// About how many bits the codes of the change take. What stays is taken as transparent.
uint64_t GuessBits(const Ids& from, const Ids& to, const Rectangle& box) {
    constexpr ColourId kUnchanged = 0xFFFF;
    const auto width = static_cast<size_t>(box.Width());
    return GuessCodeBits<ColourId>(width, static_cast<size_t>(box.Height()), [&](size_t y, ColourId* row) {
        const ColourId* a = from.Row(box.top + static_cast<int>(y)) + box.left;
        const ColourId* b = to.Row(box.top + static_cast<int>(y)) + box.left;
        for (size_t x = 0; x < width; ++x) row[x] = a[x] == b[x] ? kUnchanged : b[x];
    });
}

// Whether the change has more colours than fit into a palette beside what is transparent.
bool HasTooManyColours(const Ids& from, const Ids& to, const Rectangle& box, size_t colours) {
    constexpr size_t kMostBesideTransparent = 255;
    if (colours <= kMostBesideTransparent) return false;
    std::vector<uint8_t> isNeeded(colours);
    size_t needed = 0;
    for (int y = box.top; y < box.bottom; ++y) {
        const ColourId* a = from.Row(y);
        const ColourId* b = to.Row(y);
        for (int x = box.left; x < box.right; ++x)
            if (a[x] != b[x] && !isNeeded[b[x]]) {
                isNeeded[b[x]] = 1;
                ++needed;
            }
    }
    return needed > kMostBesideTransparent;
}

// One way to show a moment: drawing it on `base`.
struct Way {
    std::shared_ptr<Way> before;
    uint8_t disposalBefore = kDisposeLeave;  // of the frame before,
    Rectangle boxBefore;                     // and its box: disposal 2 may have to clear more than it draws
    Canvas base, canvas;
    Rectangle box;
    uint64_t bits = 0;  // guessed, of all frames up to this one
    size_t moment = 0;
    bool isAsBefore = false;  // it draws on what the document draws on, too
};
using WayHandle = std::shared_ptr<Way>;

struct Moment {
    uint32_t firstFrame = 0, lastFrame = 0;
    uint32_t delay = 0, played = 0;
    bool isAlone = false;  // waits for the user
};

class Planner {
public:
    Planner(const Animation& animation, const PlanOptions& options, FramePlan* plan)
        : animation_(animation), options_(options), plan_(*plan) {}

    PlanResult Run() {
        Stage stage;
        if (!stage.Open(animation_, 0)) return PlanResult::kNoMemory;
        pixels_.resize(static_cast<size_t>(animation_.Screen().Pixels()));
        canvas_ = empty_ = std::make_shared<Ids>(animation_.Width(), animation_.Height());
        for (uint32_t frame = 0; frame < animation_.Frames().size(); ++frame) {
            if (options_.stop && *options_.stop) return PlanResult::kStopped;
            if (!stage.Show(frame)) return PlanResult::kNoMemory;
            Canvas shown = Take(stage);
            if (!shown) return PlanResult::kTooManyColours;
            if (frame > 0 && shown == canvas_ && MayMerge(frame)) {
                Merge(frame);
                continue;
            }
            StartMoment(frame);
            Follow(shown, stage.Changed());
            canvas_ = shown;
            TakeDisposal(frame);
        }
        Finish();
        return outOfMemory_ ? PlanResult::kNoMemory : PlanResult::kDone;
    }

private:
    Canvas Take(const Stage& stage);
    const uint32_t* GiveUp(const uint32_t* row, const uint32_t* before, const Rectangle& area);
    bool MayMerge(uint32_t number) const;
    bool WaitsForUser(const Frame& frame) const;
    void StartMoment(uint32_t number);
    void Merge(uint32_t number);
    void Follow(const Canvas& shown, const Rectangle& changed);
    void TakeDisposal(uint32_t number);
    void Propose(const WayHandle& before, uint8_t disposal, const Rectangle& boxBefore, const Canvas& base,
                 const Canvas& shown, const Rectangle& box);
    void ProposeClearing(const WayHandle& before, const Rectangle& cleared, const Canvas& shown,
                         const Rectangle& changed);
    bool WasCleared(const Rectangle& cleared) const;
    void Price();
    void Guess(Way* way) const;
    void MeasureClose();
    void Mend(Way* way) const;
    template <typename Work>
    void ForEachProposed(const Work& work);
    uint64_t Measure(const Way& way) const;
    uint64_t BitsBefore() const;
    void KeepBest();
    void Settle();
    void Finish();
    void Plan(const Way& way, uint8_t disposal, const Rectangle& box);
    void TakeColours(PlannedFrame* frame);

    const Animation& animation_;
    const PlanOptions& options_;
    FramePlan& plan_;
    Canvas empty_, canvas_;
    Canvas drawnOn_;    // what the document itself draws the next frame on; none where that was not made here
    Rectangle oldBox_;  // of the frame before in the document, when its disposal clears it
    std::vector<uint32_t> pixels_;  // of canvas_
    std::vector<uint32_t> nearRow_;
    std::vector<Moment> moments_;
    std::vector<WayHandle> ways_;      // to the last moment, the best first
    std::vector<WayHandle> proposed_;  // to the one at hand
    size_t settled_ = 0;               // frames planned
    std::vector<uint8_t> marks_;       // two for each colour, for TakeColours
    double bitsOfGuess_ = 1;           // how many a guessed one has lately come to
    std::atomic<bool> outOfMemory_ = false;
};

// The canvas as it is now: the one before when nothing differs; none when there are too many colours.
Canvas Planner::Take(const Stage& stage) {
    const Rectangle area = Common(stage.Changed(), animation_.Screen());
    std::shared_ptr<Ids> taken;
    for (int y = area.top; y < area.bottom; ++y) {
        const uint32_t* row = stage.Canvas().Row(y);
        uint32_t* before = &pixels_[static_cast<size_t>(y) * static_cast<size_t>(animation_.Width())];
        int left = area.left, right = area.right;
        if (options_.givesUp) row = GiveUp(row, before, area);
        if (memcmp(row + left, before + left, static_cast<size_t>(right - left) * sizeof *row) == 0) continue;
        Narrow(row, before, &left, &right);
        if (!taken) taken = std::make_shared<Ids>(*canvas_);
        const auto width = static_cast<size_t>(right - left);
        if (!plan_.colours.Number(row + left, width, taken->OwnRow(y) + left)) return nullptr;
        memcpy(before + left, row + left, width * sizeof *row);
    }
    return taken ? Canvas(taken) : canvas_;
}

// The row with pixels that hardly change left as they are. What they were is what the plan shows, not what was to be
// shown: small changes do not add up.
const uint32_t* Planner::GiveUp(const uint32_t* row, const uint32_t* before, const Rectangle& area) {
    nearRow_.resize(static_cast<size_t>(animation_.Width()));
    for (int x = area.left; x < area.right; ++x) {
        const bool isNear = ColourDistance(row[x], before[x]) <= options_.givesUp;
        nearRow_[static_cast<size_t>(x)] = isNear ? before[x] : row[x];
    }
    return nearRow_.data();
}

bool Planner::WaitsForUser(const Frame& frame) const {
    return frame.control >= 0 &&
           (GetControlFields(animation_.List().blocks[static_cast<uint32_t>(frame.control)]).packed &
            kControlUserInput);
}

// Both sums have to stay: that of the file's delays and that of what browsers make of them.
bool Planner::MayMerge(uint32_t number) const {
    const Frame& frame = animation_.Frames()[number];
    const Moment& moment = moments_.back();
    const uint32_t delay = moment.delay + frame.delay;
    if (options_.keepFrames || moment.isAlone || WaitsForUser(frame) || delay > kMostDelay) return false;
    if (PlayedDelay(static_cast<uint16_t>(delay)) != moment.played + frame.length) return false;
    for (uint32_t block = frame.firstBlock; block < frame.block; ++block)
        if (animation_.List().blocks[block].kind == kPlainTextBlock) return false;
    return true;
}

void Planner::StartMoment(uint32_t number) {
    const Frame& frame = animation_.Frames()[number];
    moments_.push_back({number, number, frame.delay, frame.length, WaitsForUser(frame)});
}

void Planner::Merge(uint32_t number) {
    const Frame& frame = animation_.Frames()[number];
    Moment& moment = moments_.back();
    moment.lastFrame = number;
    moment.delay += frame.delay;
    moment.played += frame.length;
}

// Notes what the document draws its next frame on.
void Planner::TakeDisposal(uint32_t number) {
    const Frame& frame = animation_.Frames()[number];
    oldBox_ = frame.disposal == kDisposeBackground ? frame.area : Rectangle();
    if (frame.disposal == kDisposeBackground)
        drawnOn_ = nullptr;
    else if (frame.disposal != kDisposePrevious)
        drawnOn_ = canvas_;
}

void Planner::Propose(const WayHandle& before, uint8_t disposal, const Rectangle& boxBefore, const Canvas& base,
                      const Canvas& shown, const Rectangle& box) {
    auto way = std::make_shared<Way>();
    way->before = before;
    way->disposalBefore = disposal;
    way->boxBefore = boxBefore;
    way->base = base;
    way->canvas = shown;
    way->box = box;
    way->moment = moments_.size() - 1;
    way->isAsBefore = base == drawnOn_ || (disposal == kDisposeBackground && boxBefore == oldBox_);
    proposed_.push_back(std::move(way));
}

// The frame before clears `cleared` when its time is over.
void Planner::ProposeClearing(const WayHandle& before, const Rectangle& cleared, const Canvas& shown,
                              const Rectangle& changed) {
    auto base = std::make_shared<Ids>(*canvas_);
    for (int y = cleared.top; y < cleared.bottom; ++y)
        std::fill_n(base->OwnRow(y) + cleared.left, static_cast<size_t>(cleared.Width()), kTransparentId);
    const Difference after = Compare(*base, *shown, Around(cleared, changed));
    Propose(before, kDisposeBackground, cleared, base, shown, after.box);
}

// Whether the frame before clears in the document, too, and this and more.
bool Planner::WasCleared(const Rectangle& cleared) const {
    return !oldBox_.IsEmpty() && oldBox_ != cleared && Common(oldBox_, cleared) == cleared;
}

// Finds the ways to show the new canvas: each of the ways so far, with each disposal.
void Planner::Follow(const Canvas& shown, const Rectangle& changed) {
    proposed_.clear();
    if (moments_.size() == 1) {
        drawnOn_ = empty_;
        Propose(nullptr, kDisposeLeave, {}, empty_, shown, Compare(*empty_, *shown, animation_.Screen()).box);
        std::swap(ways_, proposed_);
        return;
    }
    const Difference plain = Compare(*canvas_, *shown, Common(changed, animation_.Screen()));
    const bool vanishes = !plain.vanishing.IsEmpty();
    if (!vanishes) Propose(ways_.front(), kDisposeLeave, ways_.front()->box, canvas_, shown, plain.box);
    for (const WayHandle& way : ways_) {
        const Difference back = Compare(*way->base, *shown, Around(way->box, plain.box));
        const bool helps = options_.effort != Effort::kFast || back.pixels <= plain.pixels || vanishes;
        if (back.vanishing.IsEmpty() && helps) Propose(way, kDisposePrevious, way->box, way->base, shown, back.box);
        if (!vanishes) continue;
        const Rectangle cleared = Around(way->box, plain.vanishing);
        ProposeClearing(way, cleared, shown, plain.box);
        if (WasCleared(cleared)) ProposeClearing(way, oldBox_, shown, plain.box);
    }
    Price();
    KeepBest();
    Settle();
}

// The bits that a frame takes, all pixels that stay transparent.
uint64_t Planner::Measure(const Way& way) const {
    std::vector<uint8_t> pixels;
    pixels.reserve(static_cast<size_t>(way.box.Pixels()));
    std::vector<int16_t> indexOf(plan_.colours.Pixels().size(), -1);
    int colours = 1;  // 0 is what stays
    for (int y = way.box.top; y < way.box.bottom; ++y) {
        const ColourId* base = way.base->Row(y);
        const ColourId* shown = way.canvas->Row(y);
        for (int x = way.box.left; x < way.box.right; ++x) {
            int16_t& index = indexOf[shown[x]];
            if (base[x] != shown[x] && index < 0) index = static_cast<int16_t>(std::min(colours++, UINT8_MAX));
            pixels.push_back(base[x] == shown[x] ? uint8_t{0} : static_cast<uint8_t>(index));
        }
    }
    int codeSize = 2;
    while (codeSize < 8 && 1 << codeSize < colours) ++codeSize;
    EncodedPixels codes;
    PixelsToEncode image;
    image.pixels = pixels;
    image.codeSize = codeSize;
    return SearchCodes(image, Effort::kFast, 0, &codes) ? codes.bits : pixels.size() * 8;
}

// The bits of the image that the document has for the last moment. They will do where what it is drawn on is the same.
uint64_t Planner::BitsBefore() const {
    const Frame& frame = animation_.Frames()[moments_.back().firstFrame];
    const uint64_t bytes = animation_.List().blocks[frame.block].source.bytes;
    return bytes ? bytes * 8 : UINT64_MAX;
}

// Tells how many bits each proposed way takes. Where there is but one, it does not matter.
void Planner::Price() {
    constexpr uint64_t kBitsOfFrame = uint64_t{8} * 20;
    if (proposed_.size() > 1) {
        ForEachProposed([this](Way& way) { Guess(&way); });
        if (options_.effort != Effort::kFast) MeasureClose();
    }
    for (const WayHandle& way : proposed_) {
        if (way->isAsBefore && options_.effort != Effort::kFast) way->bits = std::min(way->bits, BitsBefore());
        way->bits += way->before->bits + kBitsOfFrame;
    }
}

void Planner::Guess(Way* way) const {
    const bool cantBeShown = HasTooManyColours(*way->base, *way->canvas, way->box, plan_.colours.Pixels().size());
    way->bits = cantBeShown ? kCantBeShown : GuessBits(*way->base, *way->canvas, way->box);
}

// Measures where guesses do not tell which way is best. What they come to, compared with what was guessed, mends the
// other guesses.
void Planner::MeasureClose() {
    const auto least = std::ranges::min_element(proposed_, {}, [](const WayHandle& way) { return way->bits; });
    const uint64_t close = (*least)->bits + (*least)->bits / 2;
    const auto isClose = [close](const WayHandle& way) { return way->bits <= close && way->bits < kCantBeShown; };
    if (std::ranges::count_if(proposed_, isClose) > 1) {
        std::vector<WayHandle> measured;
        uint64_t guessed = 0, found = 0;
        std::ranges::copy_if(proposed_, std::back_inserter(measured), isClose);
        for (const WayHandle& way : measured) guessed += way->bits;
        std::swap(measured, proposed_);
        ForEachProposed([this](Way& way) { way.bits = Measure(way); });
        std::swap(measured, proposed_);
        for (const WayHandle& way : measured) found += way->bits;
        if (guessed && found) bitsOfGuess_ = static_cast<double>(found) / static_cast<double>(guessed);
        for (const WayHandle& way : proposed_)
            if (std::ranges::find(measured, way) == measured.end()) Mend(way.get());
    } else {
        for (const WayHandle& way : proposed_) Mend(way.get());
    }
}

void Planner::Mend(Way* way) const {
    if (way->bits < kCantBeShown) way->bits = static_cast<uint64_t>(static_cast<double>(way->bits) * bitsOfGuess_);
}

// Does the work for all of them, on several processors.
template <typename Work>
void Planner::ForEachProposed(const Work& work) {
    RunInParallel(proposed_.size(), options_.threads, [&](size_t i) {
        try {
            work(*proposed_[i]);
        } catch (const std::bad_alloc&) {
            outOfMemory_ = true;
        }
    });
}

// Of ways that leave the same to the frames behind, the best; and of those the best few.
void Planner::KeepBest() {
    std::stable_sort(proposed_.begin(), proposed_.end(),
                     [](const WayHandle& a, const WayHandle& b) { return a->bits < b->bits; });
    ways_.clear();
    for (const WayHandle& way : proposed_) {
        const bool isKnown = std::ranges::any_of(ways_, [&](const WayHandle& k) { return k->base == way->base; });
        if (!isKnown && ways_.size() < (options_.effort == Effort::kFast ? kMostWaysInHurry : kMostWays))
            ways_.push_back(way);
    }
}

const Way* AncestorAt(const Way* way, size_t moment) {
    while (way->moment > moment) way = way->before.get();
    return way;
}

// Plans the frames on which all ways agree; too many undecided ones are decided by the best way.
void Planner::Settle() {
    while (settled_ + 1 < moments_.size()) {
        const Way* best = AncestorAt(ways_.front().get(), settled_ + 1);
        if (moments_.size() - settled_ > kLongestLag)
            std::erase_if(ways_, [&](const WayHandle& way) { return AncestorAt(way.get(), settled_ + 1) != best; });
        if (!std::ranges::all_of(ways_, [&](const WayHandle& w) { return AncestorAt(w.get(), settled_ + 1) == best; }))
            return;
        Plan(*best->before, best->disposalBefore, best->boxBefore);
        const_cast<Way*>(best)->before = nullptr;  // nobody looks behind it any more
    }
}

void Planner::Finish() {
    if (moments_.empty()) return;
    ways_.resize(1);
    Settle();
    Plan(*ways_.front(), kDisposeLeave, ways_.front()->box);
    PlannedFrame& last = plan_.frames.back();
    last.isLast = true;
    const uint8_t disposal = animation_.Frames().back().disposal;
    if (disposal == kDisposeBackground || disposal == kDisposePrevious) last.disposal = disposal;
    for (size_t i = 0; i < moments_.size(); ++i) {
        plan_.frames[i].lastFrame = moments_[i].lastFrame;
        plan_.frames[i].delay = moments_[i].delay;
    }
}

void Planner::Plan(const Way& way, uint8_t disposal, const Rectangle& box) {
    PlannedFrame frame;
    frame.firstFrame = moments_[way.moment].firstFrame;
    frame.disposal = disposal;
    frame.box = box.IsEmpty() ? Rectangle{0, 0, 1, 1} : box;
    const auto width = static_cast<size_t>(frame.box.Width());
    frame.ids.reserve(static_cast<size_t>(frame.box.Pixels()));
    frame.free.resize(static_cast<size_t>(frame.box.Pixels()));
    uint8_t* free = frame.free.data();
    for (int y = frame.box.top; y < frame.box.bottom; ++y, free += width) {
        const ColourId* base = way.base->Row(y) + frame.box.left;
        const ColourId* shown = way.canvas->Row(y) + frame.box.left;
        frame.ids.insert(frame.ids.end(), shown, shown + width);
        for (size_t x = 0; x < width; ++x) free[x] = base[x] == shown[x];
    }
    TakeColours(&frame);
    plan_.frames.push_back(std::move(frame));
    ++settled_;
}

void Planner::TakeColours(PlannedFrame* frame) {
    const size_t colours = plan_.colours.Pixels().size();
    marks_.assign(2 * colours, 0);  // whether some pixel shows the colour: one that is not free, one that is
    uint8_t* const marks = marks_.data();
    const ColourId* const ids = frame->ids.data();
    const uint8_t* const free = frame->free.data();
    for (size_t i = 0, count = frame->ids.size(); i < count; ++i) marks[size_t{2} * ids[i] + (free[i] ? 1 : 0)] = 1;
    constexpr size_t kTransparentMarks = size_t{2} * kTransparentId;
    frame->needsTransparency = marks[kTransparentMarks] || marks[kTransparentMarks + 1];
    for (size_t id = 0; id < colours; ++id) {
        const bool isNeeded = marks[2 * id], isOffered = marks[2 * id + 1];
        if (isOffered) frame->hasFree = true;
        if (id == kTransparentId) continue;
        if (isNeeded)
            frame->needed.push_back(static_cast<ColourId>(id));
        else if (isOffered)
            frame->offered.push_back(static_cast<ColourId>(id));
    }
}

}  // namespace

PlanResult PlanFrames(const Animation& animation, const PlanOptions& options, FramePlan* plan) {
    return Planner(animation, options, plan).Run();
}
