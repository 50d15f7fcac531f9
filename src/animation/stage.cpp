#include "animation/stage.h"

#include <cstring>

#include "animation/paint_text.h"

namespace {

void CopyOut(uint32_t* to, const CanvasView& canvas, const Rectangle& area) {
    const auto width = static_cast<size_t>(area.Width());
    for (int y = area.top; y < area.bottom; ++y, to += width)
        memcpy(to, canvas.Row(y) + area.left, width * sizeof(uint32_t));
}

void CopyBack(const CanvasView& canvas, const Rectangle& area, const uint32_t* from) {
    const auto width = static_cast<size_t>(area.Width());
    for (int y = area.top; y < area.bottom; ++y, from += width)
        memcpy(canvas.Row(y) + area.left, from, width * sizeof(uint32_t));
}

void Clear(const CanvasView& canvas, const Rectangle& area) {
    for (int y = area.top; y < area.bottom; ++y)
        std::fill_n(canvas.Row(y) + area.left, static_cast<size_t>(area.Width()), kTransparent);
}

}  // namespace

bool Stage::Open(const Animation& animation, uint64_t keptBytes) {
    if (!OpenPart(animation, animation.Screen())) return false;
    PlanKeeping(keptBytes);
    return true;
}

bool Stage::OpenRows(const Animation& animation, int top, int bottom) {
    return OpenPart(animation, {0, top, animation.Width(), bottom});
}

bool Stage::OpenPart(const Animation& animation, const Rectangle& part) {
    *this = Stage();
    animation_ = &animation;
    part_ = part;
    palette_ = FindGlobalPalette(animation.List());
    pixels_ = AllocateScratchArray<uint32_t>(part.Pixels());
    if (!pixels_) return false;
    canvas_ = {pixels_.get(), part.Width(), part.Height(), part.top};
    return true;
}

void Stage::PlanKeeping(uint64_t keptBytes) {
    const uint64_t canvasBytes = part_.Pixels() * sizeof(uint32_t);
    const uint64_t frames = animation_->Frames().size();
    if (canvasBytes == 0 || frames < 2) return;
    const uint64_t slots = std::min(keptBytes / canvasBytes, frames - 1);
    if (slots == 0) return;
    kept_ = AllocateScratchArray<std::unique_ptr<uint32_t[]>>(slots);
    if (!kept_) return;  // going back only takes longer
    keptEvery_ = static_cast<uint32_t>((frames + slots) / (slots + 1));
    keptSlots_ = static_cast<uint32_t>(slots);
}

const uint32_t* Stage::KeptBefore(uint32_t frame) const {
    if (keptEvery_ == 0 || frame == 0 || frame % keptEvery_ != 0) return nullptr;
    uint32_t slot = frame / keptEvery_ - 1;
    return slot < keptSlots_ ? kept_[slot].get() : nullptr;
}

void Stage::Keep(uint32_t frame) {
    if (keptEvery_ == 0 || frame == 0 || frame % keptEvery_ != 0 || KeptBefore(frame)) return;
    uint32_t slot = frame / keptEvery_ - 1;
    if (slot >= keptSlots_) return;
    kept_[slot] = AllocateScratchArray<uint32_t>(part_.Pixels());
    if (kept_[slot]) CopyOut(kept_[slot].get(), canvas_, part_);
}

bool Stage::Show(uint32_t frame) {
    changed_ = {};
    if (shown_ == frame) return true;
    const uint32_t start = NearestStart(frame);
    if (shown_ < 0 || start != shown_ + 1) StartAt(start);
    for (uint32_t next = start; next <= frame; ++next) {
        Dispose();
        Keep(next);
        if (!Draw(next)) {
            shown_ = kNothing;
            return false;
        }
        shown_ = next;
    }
    return true;
}

uint32_t Stage::FramesToDraw(uint32_t frame) const {
    return shown_ == frame ? 0 : frame - NearestStart(frame) + 1;
}

// The frame to draw first on the way to `frame`: the one behind the shown one when that is nearest.
uint32_t Stage::NearestStart(uint32_t frame) const {
    const auto following = static_cast<uint32_t>(shown_ + 1);
    uint32_t start = frame;
    while (start > 0 && start != following && !animation_->Frames()[start].standsAlone && !KeptBefore(start)) --start;
    return start;
}

// Makes the canvas what it was before `frame` was drawn. For one that stands alone it may be anything.
void Stage::StartAt(uint32_t frame) {
    changed_ = part_;
    shown_ = kNothing;
    if (const uint32_t* kept = KeptBefore(frame))
        CopyBack(canvas_, changed_, kept);
    else
        Clear(canvas_, changed_);
}

void Stage::Dispose() {
    if (shown_ == kNothing) return;
    const Frame& frame = animation_->Frames()[static_cast<size_t>(shown_)];
    const Rectangle area = AreaOf(frame);
    if (frame.disposal == kDisposeBackground)
        Clear(canvas_, area);
    else if (frame.disposal == kDisposePrevious)
        CopyBack(canvas_, area, under_.get());
    else
        return;
    changed_ = Around(changed_, area);
}

bool Stage::Draw(uint32_t number) {
    const Frame& frame = animation_->Frames()[number];
    const Block& block = animation_->List().blocks[frame.block];
    ++framesDrawn_;
    if (animation_->DrawsTexts()) DrawTexts(frame);
    if (frame.disposal == kDisposePrevious && !SaveUnder(AreaOf(frame))) return false;
    if (block.kind != kImageBlock) return true;
    changed_ = Around(changed_, AreaOf(frame));
    return PaintImage(canvas_, block, ColoursOf(block, palette_), frame.transparentIndex);
}

void Stage::DrawTexts(const Frame& frame) {
    const BlockList& list = animation_->List();
    int transparentIndex = kNoTransparency;
    for (uint32_t index = frame.firstBlock; index <= frame.block; ++index) {
        const Block& block = list.blocks[index];
        if (block.kind == kControlBlock) transparentIndex = TransparentIndexOf(block);
        if (block.kind == kPlainTextBlock)
            changed_ = Around(changed_, PaintText(canvas_, block, palette_.colours, transparentIndex));
    }
}

bool Stage::SaveUnder(const Rectangle& area) {
    if (area.Pixels() > underRoom_) {
        under_ = AllocateScratchArray<uint32_t>(area.Pixels());
        underRoom_ = under_ ? area.Pixels() : 0;
        if (!under_) return false;
    }
    CopyOut(under_.get(), canvas_, area);
    return true;
}
