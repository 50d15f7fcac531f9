#include "size/optimise.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <mutex>
#include <new>
#include <numeric>

#include "animation/stage.h"
#include "gif/descriptor.h"
#include "gif/gif_writer.h"
#include "platform/parallel.h"
#include "size/frame_coder.h"
#include "size/frame_plan.h"
#include "size/left_alone.h"
#include "size/palette_plan.h"
#include "size/plays_alike.h"
#include "size/rebuild.h"

namespace {

class Optimiser {
public:
    Optimiser(const BlockList& list, const OptimiseOptions& options, OptimiseWatch* watch)
        : list_(list), options_(options), watch_(watch) {}
    const OptimiseNotes& Notes() const { return notes_; }

    OptimiseResult Run(const ReadReport& report, BlockList* smaller) {
        if (!animation_.Open(list_, Texts::kLeftOut)) return OptimiseResult::kNoMemory;
        if (const char* why = WhyLeftAlone(animation_, report)) return LeaveAlone(why);
        const PlanOptions planning = {
            options_.effort, options_.keepFrames, Threads(), GivenUp(), options_.stop, [this](size_t frames) {
                if (watch_) watch_->OnPlanned(frames, animation_.Frames().size());
            }};
        switch (PlanFrames(animation_, planning, &plan_)) {
            case PlanResult::kDone: break;
            case PlanResult::kTooManyColours: return LeaveAlone("it has too many colours");
            case PlanResult::kNoMemory: return OptimiseResult::kNoMemory;
            case PlanResult::kStopped: return OptimiseResult::kStopped;
        }
        PlanPalette();
        if (OptimiseResult coded = CodeFrames(); coded != OptimiseResult::kSmaller) return coded;
        BlockList rebuilt;
        if (!Rebuild(task_, coded_, &rebuilt)) return OptimiseResult::kNoMemory;
        return Prove(rebuilt, smaller);
    }

private:
    bool StopRequested() const { return (options_.stop && *options_.stop) || (watch_ && watch_->StopRequested()); }
    size_t Threads() const { return options_.threads ? options_.threads : ParallelThreads(); }
    // Half of the loss goes into changes that are given up, the other half into strings that nearly fit.
    int GivenUp() const { return (options_.lossy + 1) / 2; }
    OptimiseResult LeaveAlone(const char* why) {
        notes_.leftAlone = why;
        return OptimiseResult::kLeftAlone;
    }
    void PlanPalette();
    OptimiseResult CodeFrames();
    void CodeOne(size_t number);
    OptimiseResult Prove(const BlockList& rebuilt, BlockList* smaller);

    const BlockList& list_;
    const OptimiseOptions& options_;
    OptimiseWatch* watch_;
    Animation animation_;
    FramePlan plan_;
    CodingTask task_;
    std::vector<CodedFrame> coded_;

    std::atomic<bool> noMemory_ = false, stopped_ = false, cantBeShown_ = false;
    OptimiseNotes notes_;
    std::mutex watching_;
    size_t done_ = 0;
};

// The colours of texts have their places in the global palette, which stays for them; for the background its own colour
// is kept.
void Optimiser::PlanPalette() {
    task_.plan = &plan_;
    task_.animation = &animation_;
    task_.effort = options_.effort;
    task_.alikeWithin = options_.lossy - GivenUp();
    task_.stop = options_.stop;
    const Block& header = list_.blocks[0];
    const GlobalPalette old = PaletteOfHeader(header);
    const int background = GetHeaderFields(header).backgroundIndex;
    if (old.depth && FindBlock(list_, kPlainTextBlock) >= 0) {
        task_.keepsGlobal = true;
        task_.globalDepth = old.depth;
        for (int i = 0; i < 1 << old.depth; ++i) {
            const size_t id = plan_.colours.Find(PixelOf(old.colours[i]));
            task_.global.push_back(id < plan_.colours.Pixels().size() ? static_cast<ColourId>(id) : kTransparentId);
        }
        return;
    }
    std::vector<ColourId> wanted;
    if (old.depth && background < 1 << old.depth) {
        const uint32_t pixel = PixelOf(old.colours[background]);
        ColourId id = kTransparentId;
        if (plan_.colours.Number(&pixel, 1, &id)) wanted.push_back(id);
    }
    task_.global = ChooseGlobalPalette(plan_, wanted);
    const bool hasRoom = task_.global.size() < kMostColours;
    const bool frees = std::ranges::any_of(plan_.frames, [this](const PlannedFrame& frame) {
        return frame.hasFree && frame.needed.size() == task_.global.size();
    });
    task_.globalDepth = DepthForColours(task_.global.size() + (hasRoom && frees ? 1 : 0));
}

void Optimiser::CodeOne(size_t number) {
    if (noMemory_ || stopped_ || cantBeShown_) return;
    if (StopRequested()) {
        stopped_ = true;
        return;
    }
    try {
        const CodingResult result = CodeFrame(task_, plan_.frames[number], &coded_[number]);
        if (result == CodingResult::kCantBeShown) cantBeShown_ = true;
        if (result == CodingResult::kNoMemory) noMemory_ = true;
        const std::lock_guard lock(watching_);
        ++done_;
        if (watch_) watch_->OnFrame(done_, coded_.size());
    } catch (const std::exception&) {
        noMemory_ = true;
    }
}

OptimiseResult Optimiser::CodeFrames() {
    coded_.resize(plan_.frames.size());
    std::vector<size_t> order(coded_.size());
    std::iota(order.begin(), order.end(), size_t{0});
    // The large ones first, so that no thread is left with one at the end.
    std::ranges::stable_sort(order, std::greater(), [this](size_t i) { return plan_.frames[i].box.Pixels(); });
    RunInParallel(order.size(), Threads(), [&](size_t i) { CodeOne(order[i]); });
    if (stopped_ || StopRequested()) return OptimiseResult::kStopped;
    if (noMemory_) return OptimiseResult::kNoMemory;
    return cantBeShown_ ? OptimiseResult::kNothingGained : OptimiseResult::kSmaller;
}

// What is handed over is what was read from the bytes that will be written.
OptimiseResult Optimiser::Prove(const BlockList& rebuilt, BlockList* smaller) {
    const std::optional<uint64_t> before = WrittenBytes(list_);
    File written, back;
    if (!before || !written.CreateMemory() || !WriteWholeGif(rebuilt, written, nullptr))
        return OptimiseResult::kNoMemory;
    if (written.Written().size() >= *before) return OptimiseResult::kNothingGained;
    back.OpenMemory(written.Written().data(), written.Written().size());
    BlockList proven;
    ReadReport report;
    if (!CreateBlockList(&proven) || ReadGif(&proven, back, &report, Manner::kWhole) != kReadDone ||
        std::ranges::find(report.damages, DamageKind::kPictureTooLarge, &Damage::kind) != report.damages.end())
        return OptimiseResult::kNoMemory;
    const LookOptions looking = {Threads(), options_.stop};
    switch (options_.lossy ? PlaysNearly(list_, proven, options_.lossy, &notes_.loss, looking)
                           : PlaysAlike(list_, proven, looking)) {
        case Likeness::kAlike: break;
        case Likeness::kDifferent: return OptimiseResult::kNothingGained;
        case Likeness::kNoMemory: return OptimiseResult::kNoMemory;
        case Likeness::kStopped: return OptimiseResult::kStopped;
    }
    *smaller = std::move(proven);
    return OptimiseResult::kSmaller;
}

}  // namespace

OptimiseResult Optimise(const BlockList& list, const ReadReport& report, const OptimiseOptions& options,
                        OptimiseWatch* watch, BlockList* smaller, OptimiseNotes* notes) {
    try {
        Optimiser optimiser(list, options, watch);
        const OptimiseResult result = optimiser.Run(report, smaller);
        if (notes) *notes = optimiser.Notes();
        return result;
    } catch (const std::bad_alloc&) {
        return OptimiseResult::kNoMemory;
    }
}

OptimiseResult OptimiseWithin(const BlockList& list, const ReadReport& report, const OptimiseOptions& options,
                              OptimiseWatch* watch, BlockList* smaller, OptimiseNotes* notes) {
    OptimiseOptions exact = options;
    exact.lossy = 0;
    const OptimiseResult plain = Optimise(list, report, exact, watch, smaller, notes);
    const bool isSmaller = plain == OptimiseResult::kSmaller;
    if (!options.lossy || (!isSmaller && plain != OptimiseResult::kNothingGained)) return plain;
    BlockList changed;
    OptimiseNotes changedNotes;
    const OptimiseResult result = Optimise(list, report, options, watch, &changed, &changedNotes);
    if (result == OptimiseResult::kNothingGained) return plain;
    if (result != OptimiseResult::kSmaller) return result;
    const std::optional<uint64_t> bytes = WrittenBytes(changed), plainBytes = WrittenBytes(isSmaller ? *smaller : list);
    if (!bytes || !plainBytes) return OptimiseResult::kNoMemory;
    if (*bytes >= *plainBytes) return plain;
    *smaller = std::move(changed);
    *notes = changedNotes;
    return result;
}

std::optional<uint64_t> WrittenBytes(const BlockList& list, const Identity* names) {
    File written;
    if (!written.CreateMemory() || !WriteWholeGif(list, written, names)) return std::nullopt;
    return written.Written().size();
}
