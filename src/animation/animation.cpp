#include "animation/animation.h"

#include <algorithm>
#include <cstring>

#include "gif/descriptor.h"
#include "platform/bytes.h"

namespace {

constexpr const char* kLoopApplications[] = {kLoopApplication, "ANIMEXTS1.0"};
constexpr uint8_t kLoopSubBlock = 1, kBufferSubBlock = 2;
constexpr uint8_t kSubBlockKind = 7;  // the kind is in three bits, and browsers look at these alone
constexpr size_t kLoopBytes = 3, kBufferBytes = 5;

uint8_t PlayedDisposal(uint8_t packed) {
    auto disposal = static_cast<uint8_t>((packed & kControlDisposal) >> kControlDisposalShift);
    return disposal == kDisposePreviousOfOld ? uint8_t{kDisposePrevious} : disposal;
}

// What `frame` has from the control in front of it.
void TakeControl(Frame* frame, const Block& control, uint32_t index) {
    const ControlFields fields = GetControlFields(control);
    frame->control = static_cast<int32_t>(index);
    frame->delay = fields.delay;
    frame->disposal = PlayedDisposal(fields.packed);
    frame->transparentIndex = TransparentIndexOf(control);
}

Rectangle PlaceOf(const ImageFields& image) {
    return {image.left, image.top, image.left + image.width, image.top + image.height};
}

// Loops in another form than that of the loop block: of the other name, longer, with other bits in its kind, or behind
// the size that a buffer was to have.
bool IsOtherLoop(const Block& block) {
    return block.kind == kApplicationBlock && std::ranges::any_of(kLoopApplications, [&block](const char* application) {
               return memcmp(block.descriptor + kIdentifierOffset, application,
                             kIdentifierBytes + kAuthenticationBytes) == 0;
           });
}

}  // namespace

int RepeatsOf(const Block& block) {
    if (block.kind == kLoopBlock) return GetLoopIterations(block);
    if (!IsOtherLoop(block)) return Animation::kNoLoop;
    MemoryLock data(block.data);
    if (!data) return Animation::kNoLoop;
    std::span<const uint8_t> left(data.Bytes(), block.dataLength);
    while (left.size() > kBufferBytes && (left[0] & kSubBlockKind) == kBufferSubBlock)
        left = left.subspan(kBufferBytes);
    if (left.size() < kLoopBytes || (left[0] & kSubBlockKind) != kLoopSubBlock) return Animation::kNoLoop;
    return GetWord(&left[1]);
}

int TransparentIndexOf(const Block& control) {
    const ControlFields fields = GetControlFields(control);
    return (fields.packed & kControlTransparent) ? fields.transparentIndex : kNoTransparency;
}

Palette ColoursOf(const Block& image, const GlobalPalette& global) {
    return (GetImageFields(image).packed & kHasPalette) ? image.palette : global.colours;
}

bool Animation::Open(const BlockList& list, Texts texts) {
    list_ = &list;
    texts_ = texts;
    repeats_ = kNoLoop;
    count_ = 0;
    uint64_t most = 1;  // texts behind the last image
    for (const Block& block : list.All()) {
        most += block.kind == kImageBlock;
        if (int repeats = RepeatsOf(block); repeats != kNoLoop) repeats_ = repeats;
    }
    frames_ = AllocateScratchArray<Frame>(most);
    if (!frames_) return false;
    FitScreen();
    TakeFrames();
    return true;
}

void Animation::FitScreen() {
    const Block* header = FindHeader(*list_);
    const HeaderFields screen = header ? GetHeaderFields(*header) : HeaderFields();
    width_ = screen.screenWidth;
    height_ = screen.screenHeight;
    int first = FindBlock(*list_, kImageBlock);
    if (first < 0) return;
    const Rectangle place = PlaceOf(GetImageFields(list_->blocks[static_cast<uint32_t>(first)]));
    if (width_ == 0) width_ = place.right;
    if (height_ == 0) height_ = place.bottom;
}

void Animation::TakeFrames() {
    Frame next = {};
    bool hasTexts = false;
    for (uint32_t index = 0; index < list_->count; ++index) {
        const Block& block = list_->blocks[index];
        if (block.kind == kControlBlock) TakeControl(&next, block, index);
        if (block.kind == kPlainTextBlock && DrawsTexts()) {
            hasTexts = true;
            next.block = index;
        }
        if (block.kind != kImageBlock) continue;
        next.block = index;
        next.area = Common(PlaceOf(GetImageFields(block)), Screen());
        AddFrame(next);
        next = {};
        next.firstBlock = index + 1;
        hasTexts = false;
    }
    if (hasTexts) AddFrame(next);
}

void Animation::AddFrame(const Frame& frame) {
    Frame& added = frames_[count_];
    added = frame;
    added.start = Length();
    added.length = PlayedDelay(frame.delay);
    added.standsAlone = StandsAlone(frame);
    ++count_;
}

bool Animation::StandsAlone(const Frame& frame) const {
    const Block& block = list_->blocks[frame.block];
    if (block.kind != kImageBlock || frame.transparentIndex != kNoTransparency || frame.disposal == kDisposePrevious ||
        frame.area != Screen())
        return false;
    const ImageFields fields = GetImageFields(block);
    std::optional<ImageInfo> info = GetImageInfo(block.data);
    return info && info->width == fields.width && info->height == fields.height;
}
