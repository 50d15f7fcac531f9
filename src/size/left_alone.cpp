#include "size/left_alone.h"

#include <algorithm>

#include "animation/stage.h"
#include "gif/descriptor.h"

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

bool HasImageWithoutPixels(const Animation& animation) {
    return std::ranges::any_of(animation.Frames(),
                               [&](const Frame& frame) { return !animation.List().blocks[frame.block].data; });
}

}  // namespace

const char* WhyLeftAlone(const Animation& animation, const ReadReport& report) {
    if (animation.Frames().empty()) return "it has no frames";
    if (!std::ranges::all_of(report.damages, IsHarmless)) return "it is damaged";
    const HeaderFields screen = GetHeaderFields(animation.List().blocks[0]);
    if (screen.screenWidth == 0 || screen.screenHeight == 0) return "its screen has no size";
    if (!FitsCanvas(animation)) return "its screen is too large";
    if (HasImageWithoutPixels(animation)) return "one of its images is too large";
    if (!FirstImageFits(animation))
        return "its first image reaches beyond the screen, which players show in several ways";
    if (HasTextBehindControl(animation))
        return "a text stands between a control and its image, which players take in several ways";
    if (HasOldDisposal(animation)) return "a frame has disposal 4, which players take in several ways";
    return nullptr;
}
