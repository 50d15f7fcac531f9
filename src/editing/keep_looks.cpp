#include "editing/keep_looks.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "animation/canvas.h"
#include "animation/stage.h"
#include "editing/canvas_image.h"
#include "editing/list_draft.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"

namespace {

constexpr int kMostEdge = 65535;  // what an image's place can be

// The canvases of one document.
struct LookSource {
    Animation animation;
    Stage stage;

    bool Open(const BlockList& list) {
        return animation.Open(list, Texts::kLeftOut) && stage.Open(animation, kKeptCanvasBytes);
    }
};

// What becomes of a frame.
struct DrawingPlan {
    std::optional<Block> image;  // another one
    int transparentIndex = kNoTransparency;
    uint8_t disposal = kDisposeNothing;
    Rectangle area;
};

uint8_t PackedFor(uint8_t packed, const DrawingPlan& plan) {
    packed = static_cast<uint8_t>(packed & ~(kControlDisposal | kControlTransparent));
    packed = static_cast<uint8_t>(packed | plan.disposal << kControlDisposalShift);
    return plan.transparentIndex == kNoTransparency ? packed : static_cast<uint8_t>(packed | kControlTransparent);
}

bool IsSame(const Canvas& a, const Canvas& b) {
    return Difference(a.View(), b.View()).IsEmpty();
}

// What the last control in front of the block says. Some players, View among them, leave it in force until the next
// one.
ControlFields InForceAt(const BlockList& list, uint32_t block) {
    while (block > 0 && list.blocks[block].kind != kControlBlock) --block;
    return list.blocks[block].kind == kControlBlock ? GetControlFields(list.blocks[block]) : ControlFields{};
}

// Why there can't be a canvas for the document, or an empty text.
std::string WhyNotComposed(const BlockList& list) {
    Animation animation;
    if (!animation.Open(list, Texts::kLeftOut)) return EditOutcome::OutOfMemory().refusal;
    if (FitsCanvas(animation) && animation.Width() <= kMostEdge && animation.Height() <= kMostEdge) return "";
    return "its screen of " + std::to_string(animation.Width()) + " x " + std::to_string(animation.Height()) +
           " pixels is too large to be composed";
}

// Plays the new order and makes sure of each frame's look before the next one comes.
class LookKeeper {
public:
    LookKeeper(std::span<const Look> looks, BlockList* list) : looks_(looks), list_(list), draft_(*list) {}

    EditOutcome Run();

private:
    bool Open();
    bool LoadLook(uint32_t frame, Canvas* canvas);
    bool DrawFrame(uint32_t frame, const Canvas& over, Canvas* canvas) const;
    bool PlanFrame(uint32_t number);
    bool KeepFrame(uint32_t frame, DrawingPlan* plan);
    bool ComposeFrame(uint32_t frame, DrawingPlan* plan);
    bool MakeImage(DrawingPlan* plan);
    bool ChooseDisposal(uint32_t frame, std::initializer_list<uint8_t> candidates, DrawingPlan* plan, bool* found);
    void Dispose(const DrawingPlan& plan, Canvas* canvas) const;
    bool IsLast(uint32_t frame) const { return frame + 1 == animation_.Frames().size(); }
    bool CameBehindControl(uint32_t number);
    bool Take(uint32_t number, const DrawingPlan& plan);
    EditOutcome Finish();

    std::span<const Look> looks_;
    BlockList* list_;
    ListDraft draft_;
    Animation animation_;
    GlobalPalette global_;
    std::map<const BlockList*, LookSource> sources_;
    Canvas before_, shown_;          // without the frame, and with it
    Canvas wanted_, next_;           // its look, and that of the one behind it
    Canvas disposed_, drawnThere_;   // what a disposal would leave, and the next frame as it is drawn on that
    ControlFields inForce_ = {};     // of the last control
    bool isReduced_ = false;         // the image made last has lost colours,
    std::vector<uint32_t> reduced_;  // as these frames have
};

bool LookKeeper::Open() {
    if (!animation_.Open(*list_, Texts::kLeftOut)) return false;
    global_ = FindGlobalPalette(*list_);
    for (const Look& look : looks_)
        if (!sources_.contains(look.document) && !sources_[look.document].Open(*look.document)) return false;
    for (Canvas* canvas : {&before_, &shown_, &wanted_, &next_, &disposed_, &drawnThere_})
        if (!canvas->Create(animation_.Width(), animation_.Height())) return false;
    return true;
}

// Of a larger canvas what there is room for; around a smaller one it is transparent.
bool LookKeeper::LoadLook(uint32_t frame, Canvas* canvas) {
    LookSource& source = sources_[looks_[frame].document];
    if (!source.stage.Show(looks_[frame].frame)) return false;
    if (source.animation.Screen() != canvas->Area()) ClearPixels(canvas->View(), canvas->Area());
    CopyPixels(canvas->View(), source.stage.Canvas(), canvas->Area());
    return true;
}

bool LookKeeper::DrawFrame(uint32_t frame, const Canvas& over, Canvas* canvas) const {
    const Frame& drawn = animation_.Frames()[frame];
    const Block& image = list_->blocks[drawn.block];
    CopyPixels(canvas->View(), over.View(), over.Area());
    return PaintImage(canvas->View(), image, ColoursOf(image, global_), drawn.transparentIndex);
}

void LookKeeper::Dispose(const DrawingPlan& plan, Canvas* canvas) const {
    CopyPixels(canvas->View(), shown_.View(), shown_.Area());
    if (plan.disposal == kDisposeBackground) ClearPixels(canvas->View(), plan.area);
    if (plan.disposal == kDisposePrevious) CopyPixels(canvas->View(), before_.View(), plan.area);
}

// The disposal that leaves the next frame least to do, the first one of equals. `*found` tells whether any of them
// leaves nothing that has to become transparent. False when memory runs out.
bool LookKeeper::ChooseDisposal(uint32_t frame, std::initializer_list<uint8_t> candidates, DrawingPlan* plan,
                                bool* found) {
    *found = IsLast(frame);
    uint64_t least = UINT64_MAX;
    DrawingPlan trial = *plan;
    for (uint8_t disposal : candidates) {
        if (IsLast(frame) || least == 0) break;
        trial.disposal = disposal;
        Dispose(trial, &disposed_);
        if (!AreaToClear(disposed_.View(), next_.View()).IsEmpty()) continue;
        if (!DrawFrame(frame + 1, disposed_, &drawnThere_)) return false;
        const uint64_t toDraw =
            IsSame(drawnThere_, next_) ? 0 : 1 + Difference(disposed_.View(), next_.View()).Pixels();
        if (toDraw >= least) continue;
        least = toDraw;
        plan->disposal = disposal;
        *found = true;
    }
    return true;
}

// For a frame that is drawn as it should be: only what it leaves behind may have to change.
bool LookKeeper::KeepFrame(uint32_t frame, DrawingPlan* plan) {
    Dispose(*plan, &disposed_);
    if (IsLast(frame) || AreaToClear(disposed_.View(), next_.View()).IsEmpty()) return true;
    bool found = false;
    if (!ChooseDisposal(frame, {kDisposeLeave, kDisposeBackground}, plan, &found)) return false;
    return found || ComposeFrame(frame, plan);
}

bool LookKeeper::MakeImage(DrawingPlan* plan) {
    if (plan->area.IsEmpty()) plan->area = {0, 0, 1, 1};
    Result<CanvasImage> made = MakeCanvasImage(before_.View(), wanted_.View(), plan->area, global_);
    if (!made) return false;
    plan->image = made->image;
    plan->transparentIndex = made->transparentIndex;
    isReduced_ = !made->isExact;
    CopyPixels(shown_.View(), before_.View(), before_.Area());
    return PaintImage(shown_.View(), made->image, ColoursOf(made->image, global_), made->transparentIndex);
}

bool LookKeeper::ComposeFrame(uint32_t frame, DrawingPlan* plan) {
    plan->area = Difference(before_.View(), wanted_.View());
    bool found = false;
    if (!MakeImage(plan)) return false;
    if (!ChooseDisposal(frame, {plan->disposal, kDisposeLeave, kDisposeBackground}, plan, &found)) return false;
    if (!found) {
        plan->area = Around(plan->area, AreaToClear(shown_.View(), next_.View()));
        plan->disposal = kDisposeBackground;
        if (!MakeImage(plan)) return false;
    }
    if (isReduced_) reduced_.push_back(frame);
    return true;
}

// `wanted_` has the frame's look, `before_` what there is.
bool LookKeeper::PlanFrame(uint32_t number) {
    const Frame& frame = animation_.Frames()[number];
    DrawingPlan plan = {std::nullopt, frame.transparentIndex, frame.disposal, frame.area};
    // There is nothing before the first frame: players do not agree on what to bring back, but on what to clear.
    const bool cameToFront = number == 0 && looks_[0].frame != 0;
    if (cameToFront && plan.disposal == kDisposePrevious) plan.disposal = kDisposeBackground;
    if (!IsLast(number) && !LoadLook(number + 1, &next_)) return false;
    if (!DrawFrame(number, before_, &shown_)) return false;
    if (IsSame(shown_, wanted_) ? !KeepFrame(number, &plan) : !ComposeFrame(number, &plan)) return false;
    Dispose(plan, &disposed_);
    std::swap(before_, disposed_);
    std::swap(wanted_, next_);
    return Take(number, plan);
}

// Whether the frame has no control, and another one is in force there than was before.
bool LookKeeper::CameBehindControl(uint32_t number) {
    if (animation_.Frames()[number].control >= 0) return false;
    const Animation& old = sources_[looks_[number].document].animation;
    return inForce_ != InForceAt(old.List(), old.Frames()[looks_[number].frame].block);
}

// Puts into the draft what differs.
bool LookKeeper::Take(uint32_t number, const DrawingPlan& plan) {
    const Frame& frame = animation_.Frames()[number];
    if (plan.image) {
        Block image = list_->blocks[frame.block];
        image.data = plan.image->data;
        image.palette = plan.image->palette;
        PutImageFields(&image, GetImageFields(*plan.image));
        if (!draft_.Replace(frame.block, image)) return false;
    }
    if (frame.control >= 0) inForce_ = GetControlFields(list_->blocks[static_cast<uint32_t>(frame.control)]);
    const bool isAsItWas = plan.disposal == frame.disposal && plan.transparentIndex == frame.transparentIndex;
    if (isAsItWas && !CameBehindControl(number)) return true;
    const bool hasControl = frame.control >= 0;
    const auto index = static_cast<uint32_t>(frame.control);
    Block control = hasControl ? list_->blocks[index] : MakeControlBlock(list_);
    ControlFields fields = hasControl ? GetControlFields(control) : ControlFields{};
    fields.packed = PackedFor(fields.packed, plan);
    if (plan.transparentIndex != kNoTransparency) fields.transparentIndex = static_cast<uint8_t>(plan.transparentIndex);
    inForce_ = fields;
    if (hasControl && !SharesControlWithText(*list_, index, frame.block)) {
        PutControlFields(&control, fields);
        return draft_.Replace(index, control);
    }
    control = MakeControlBlock(list_);
    PutControlFields(&control, fields);
    draft_.InsertBefore(frame.block, control);
    return true;
}

EditOutcome LookKeeper::Finish() {
    if (!draft_.Make(list_)) return EditOutcome::OutOfMemory();
    EditOutcome outcome;
    if (reduced_.empty()) return outcome;
    const std::string more = reduced_.size() > 1 ? " and " + std::to_string(reduced_.size() - 1) + " more" : "";
    outcome.notes.push_back("frame " + std::to_string(reduced_[0]) + more +
                            ": it has more colours than one image can have now, and the nearest of them are taken");
    return outcome;
}

EditOutcome LookKeeper::Run() {
    if (looks_.empty()) return {};
    std::set<const BlockList*> documents = {list_};
    for (const Look& look : looks_) documents.insert(look.document);
    for (const BlockList* document : documents)
        if (std::string why = WhyNotComposed(*document); !why.empty()) return EditOutcome::Refused(why);
    if (!Open() || !LoadLook(0, &wanted_)) return EditOutcome::OutOfMemory();
    for (uint32_t frame = 0; frame < looks_.size(); ++frame)
        if (!PlanFrame(frame)) return EditOutcome::OutOfMemory();
    return Finish();
}

}  // namespace

bool SharesControlWithText(const BlockList& list, uint32_t control, uint32_t block) {
    auto between = list.All().subspan(control, block - control);
    return std::ranges::find(between, kPlainTextBlock, &Block::kind) != between.end();
}

EditOutcome KeepLooks(std::span<const Look> looks, BlockList* list) {
    return WithinMemory([&] { return LookKeeper(looks, list).Run(); });
}
