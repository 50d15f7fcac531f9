#include "windows/app/played_document.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace {

// So long may one slice take; what lasts a tenth of a second is felt.
constexpr std::chrono::milliseconds kSlice{25};

// So many pixels may be drawn before the clock is looked at again.
constexpr uint64_t kPixelsBetween = uint64_t{1} << 20;

// Whether they look the same. Content that is equal but not shared counts as another one: it is only composed again.
bool LooksTheSame(const Block& a, const Block& b) {
    return a.kind == b.kind && memcmp(a.descriptor, b.descriptor, kDescriptorBytes) == 0 && a.data == b.data &&
           a.source.bytes == b.source.bytes && a.palette.Colours() == b.palette.Colours();
}

bool LookTheSame(const BlockList& a, const BlockList& b) {
    return std::ranges::equal(a.All(), b.All(), LooksTheSame);
}

uint32_t FramesBetween(const Animation& animation) {
    return static_cast<uint32_t>(
        std::clamp<uint64_t>(kPixelsBetween / std::max<uint64_t>(animation.Screen().Pixels(), 1), 1, 64));
}

}  // namespace

void PlayedDocument::Take(const BlockList& document) {
    if (LookTheSame(document, blocks_)) return;
    ++version_;
    animation_ = Animation();
    DestroyBlockList(&blocks_);
    if (document.count == 0) return;
    if (CopyBlockList(document, &blocks_) && animation_.Open(blocks_, Texts::kDrawn)) return;
    animation_ = Animation();
    DestroyBlockList(&blocks_);
}

int PlayedDocument::FrameOfLine(int line) const {
    const auto frames = animation_.Frames();
    if (line < 0 || line >= static_cast<int>(blocks_.count) || frames.empty()) return -1;
    const auto found = std::ranges::lower_bound(frames, static_cast<uint32_t>(line), {}, &Frame::block);
    return static_cast<int>(std::min<ptrdiff_t>(found - frames.begin(), std::ssize(frames) - 1));
}

Composed Composer::Compose(const PlayedDocument& played, uint32_t frame) {
    if (!played.FitsPane()) return Composed::kFailed;
    if (!isOpen_ || version_ != played.Version()) {
        version_ = played.Version();
        isOpen_ = stage_.Open(played.Played(), keptBytes_);
        if (!isOpen_) return Composed::kFailed;
    }
    const auto start = std::chrono::steady_clock::now();
    while (const uint32_t left = stage_.FramesToDraw(frame)) {
        if (std::chrono::steady_clock::now() - start >= kSlice) return Composed::kNotYet;
        if (!stage_.Show(frame - left + std::min(left, FramesBetween(played.Played())))) return Composed::kFailed;
    }
    return Composed::kReady;
}

void Composer::Forget() {
    stage_ = Stage();
    isOpen_ = false;
}
