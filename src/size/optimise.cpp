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
#include "size/palette_plan.h"
#include "size/plays_alike.h"
#include "size/rebuild.h"

namespace {

// A first image that reaches beyond the screen makes some browsers enlarge it, each in its own manner.
bool FirstImageFits(const Animation& animation) {
    const ImageFields image = GetImageFields(animation.List().blocks[animation.Frames()[0].block]);
    return image.left + image.width <= animation.Width() && image.top + image.height <= animation.Height();
}

// Players disagree about a control that has a text between itself and its image.
bool HasTextBehindControl(const Animation& animation) {
    const BlockList& list = animation.List();
    return std::ranges::any_of(animation.Frames(), [&list](const Frame& frame) {
        if (frame.control < 0) return false;
        for (auto block = static_cast<uint32_t>(frame.control); block < frame.block; ++block)
            if (list.blocks[block].kind == kPlainTextBlock) return true;
        return false;
    });
}

// Browsers take disposal 4 for 3, as old writers meant it; others take it for none.
bool HasOldDisposal(const Animation& animation) {
    return std::ranges::any_of(animation.Frames(), [&animation](const Frame& frame) {
        if (frame.control < 0) return false;
        const Block& control = animation.List().blocks[static_cast<size_t>(frame.control)];
        const int disposal = (GetControlFields(control).packed & kControlDisposal) >> kControlDisposalShift;
        return disposal == kDisposePreviousOfOld;
    });
}

bool CanBeOptimised(const Animation& animation, const ReadReport& report) {
    if (!std::ranges::all_of(report.damages, IsHarmless) || animation.Frames().empty()) return false;
    const HeaderFields screen = GetHeaderFields(animation.List().blocks[0]);
    if (screen.screenWidth == 0 || screen.screenHeight == 0 || !FitsCanvas(animation)) return false;
    for (const Frame& frame : animation.Frames())
        if (!animation.List().blocks[frame.block].data) return false;
    return FirstImageFits(animation) && !HasTextBehindControl(animation) && !HasOldDisposal(animation);
}

class Optimiser {
public:
    Optimiser(const BlockList& list, const OptimiseOptions& options, OptimiseWatch* watch)
        : list_(list), options_(options), watch_(watch) {}
    const Loss& Lost() const { return loss_; }

    OptimiseResult Run(const ReadReport& report, BlockList* smaller) {
        if (!animation_.Open(list_, Texts::kLeftOut)) return OptimiseResult::kNoMemory;
        if (!CanBeOptimised(animation_, report)) return OptimiseResult::kLeftAlone;
        const PlanOptions planning = {options_.effort, options_.keepFrames, Threads(), GivenUp(), options_.stop};
        switch (PlanFrames(animation_, planning, &plan_)) {
            case PlanResult::kDone: break;
            case PlanResult::kTooManyColours: return OptimiseResult::kLeftAlone;
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
    Loss loss_;
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
    switch (options_.lossy ? PlaysNearly(list_, proven, options_.lossy, &loss_, looking)
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
                        OptimiseWatch* watch, BlockList* smaller, Loss* loss) {
    try {
        Optimiser optimiser(list, options, watch);
        const OptimiseResult result = optimiser.Run(report, smaller);
        if (loss && result == OptimiseResult::kSmaller) *loss = optimiser.Lost();
        return result;
    } catch (const std::bad_alloc&) {
        return OptimiseResult::kNoMemory;
    }
}

OptimiseResult OptimiseWithin(const BlockList& list, const ReadReport& report, const OptimiseOptions& options,
                              OptimiseWatch* watch, BlockList* smaller, Loss* loss) {
    OptimiseOptions exact = options;
    exact.lossy = 0;
    *loss = Loss();
    const OptimiseResult plain = Optimise(list, report, exact, watch, smaller);
    const bool isSmaller = plain == OptimiseResult::kSmaller;
    if (!options.lossy || (!isSmaller && plain != OptimiseResult::kNothingGained)) return plain;
    BlockList changed;
    Loss lost;
    const OptimiseResult result = Optimise(list, report, options, watch, &changed, &lost);
    if (result == OptimiseResult::kNothingGained) return plain;
    if (result != OptimiseResult::kSmaller) return result;
    const std::optional<uint64_t> bytes = WrittenBytes(changed), plainBytes = WrittenBytes(isSmaller ? *smaller : list);
    if (!bytes || !plainBytes) return OptimiseResult::kNoMemory;
    if (*bytes >= *plainBytes) return plain;
    *smaller = std::move(changed);
    *loss = lost;
    return result;
}

std::optional<uint64_t> WrittenBytes(const BlockList& list, const Identity* names) {
    File written;
    if (!written.CreateMemory() || !WriteWholeGif(list, written, names)) return std::nullopt;
    return written.Written().size();
}
