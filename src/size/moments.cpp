#include "size/moments.h"

#include "gif/descriptor.h"
#include "size/colour_distance.h"

PlanResult MomentReader::Open() {
    if (!stage_.Open(animation_, 0)) return PlanResult::kNoMemory;
    pixels_.resize(static_cast<size_t>(animation_.Screen().Pixels()));
    canvas_ = empty_ = std::make_shared<NumberedCanvas>(animation_.Width(), animation_.Height());
    drawnOn_ = empty_;
    return PlanResult::kDone;
}

PlanResult MomentReader::Read(size_t count, std::vector<MomentHandle>* moments) {
    moments->clear();
    const size_t frames = animation_.Frames().size();
    for (; moments->size() < count && frame_ < frames; ++frame_)
        if (const PlanResult result = ReadFrame(moments); result != PlanResult::kDone) return result;
    if (moments->size() < count && open_) moments->push_back(std::move(open_));
    return PlanResult::kDone;
}

PlanResult MomentReader::ReadFrame(std::vector<MomentHandle>* moments) {
    if (options_.StopRequested()) return PlanResult::kStopped;
    if (!stage_.Show(frame_)) return PlanResult::kNoMemory;
    ChangeExtent difference;
    const CanvasHandle shown = Take(&difference);
    if (!shown) return PlanResult::kTooManyColours;
    if (open_ && shown == canvas_ && MayMerge()) {
        Merge();
        return PlanResult::kDone;
    }
    if (open_) moments->push_back(std::move(open_));
    Start(shown, difference);
    Dispose();
    return PlanResult::kDone;
}

// The canvas as it is now: the one before when nothing differs; none when there are too many colours.
CanvasHandle MomentReader::Take(ChangeExtent* difference) {
    const Rectangle area = Common(stage_.Changed(), animation_.Screen());
    std::shared_ptr<NumberedCanvas> taken;
    Rectangle changed;
    for (int y = area.top; y < area.bottom; ++y) {
        const uint32_t* row = stage_.Canvas().Row(y);
        uint32_t* before = &pixels_[static_cast<size_t>(y) * static_cast<size_t>(animation_.Width())];
        int left = area.left, right = area.right;
        if (options_.givesUp) row = GiveUp(row, before, area);
        if (memcmp(row + left, before + left, static_cast<size_t>(right - left) * sizeof *row) == 0) continue;
        Narrow(row, before, &left, &right);
        if (!taken) taken = std::make_shared<NumberedCanvas>(*canvas_);
        const auto width = static_cast<size_t>(right - left);
        if (!colours_.Number(row + left, width, taken->OwnRow(y) + left)) return nullptr;
        memcpy(before + left, row + left, width * sizeof *row);
        changed = Around(changed, {left, y, right, y + 1});
    }
    if (!taken) return canvas_;
    *difference = Compare(*canvas_, *taken, changed);
    return taken;
}

// The row with pixels that hardly change left as they are. What they were is what the plan shows, not what was to be
// shown: small changes do not add up.
const uint32_t* MomentReader::GiveUp(const uint32_t* row, const uint32_t* before, const Rectangle& area) {
    nearRow_.resize(static_cast<size_t>(animation_.Width()));
    for (int x = area.left; x < area.right; ++x) {
        const bool isNear = ColourDistance(row[x], before[x]) <= options_.givesUp;
        nearRow_[static_cast<size_t>(x)] = isNear ? before[x] : row[x];
    }
    return nearRow_.data();
}

bool MomentReader::WaitsForUser() const {
    const int32_t control = AtHand().control;
    return control >= 0 &&
           (GetControlFields(animation_.List().blocks[static_cast<uint32_t>(control)]).packed & kControlUserInput);
}

// Both sums have to stay: that of the file's delays and that of what browsers make of them.
bool MomentReader::MayMerge() const {
    const Frame& frame = AtHand();
    const uint32_t delay = open_->delay + frame.delay;
    if (options_.keepFrames || open_->isAlone || WaitsForUser() || delay > kMostDelay) return false;
    if (PlayedDelay(static_cast<uint16_t>(delay)) != open_->played + frame.length) return false;
    for (uint32_t block = frame.firstBlock; block < frame.block; ++block)
        if (animation_.List().blocks[block].kind == kPlainTextBlock) return false;
    return true;
}

void MomentReader::Merge() {
    open_->lastFrame = frame_;
    open_->delay += AtHand().delay;
    open_->played += AtHand().length;
}

void MomentReader::Start(const CanvasHandle& shown, const ChangeExtent& difference) {
    const Frame& frame = AtHand();
    open_ = std::make_shared<Moment>(Moment{started_++, frame_, frame_, frame.delay, frame.length, WaitsForUser(),
                                            shown, difference, drawnOn_, cleared_});
    canvas_ = shown;
}

// Notes what the document draws its next frame on.
void MomentReader::Dispose() {
    const Frame& frame = AtHand();
    cleared_ = frame.disposal == kDisposeBackground ? frame.area : Rectangle();
    if (frame.disposal == kDisposeBackground)
        drawnOn_ = nullptr;
    else if (frame.disposal != kDisposePrevious)
        drawnOn_ = canvas_;
}
