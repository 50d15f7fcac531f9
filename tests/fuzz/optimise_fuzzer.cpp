// Any bytes made smaller: what comes out plays the same when composed in the plainest way, and is never larger.
#undef NDEBUG  // the checks hold in every build
#include "size/optimise.h"

#include <cassert>
#include <vector>

#include "animation/stage.h"
#include "gif/descriptor.h"
#include "gif/gif_writer.h"

namespace {

constexpr uint64_t kMostPixels = 1u << 14;  // larger canvases only take longer
constexpr size_t kMostFrames = 40;

struct Shown {
    std::vector<uint32_t> canvas;
    uint64_t delay = 0, played = 0;
    bool operator==(const Shown&) const = default;
};

// One canvas, drawn pixel by pixel.
class PlainCanvas {
public:
    explicit PlainCanvas(const Animation& animation)
        : animation_(animation), palette_(FindGlobalPalette(animation.List())), pixels_(animation.Screen().Pixels()) {}

    const std::vector<uint32_t>& Show(const Frame& frame) {
        if (last_ && last_->disposal == kDisposeBackground)
            ForEach(last_->area, [this](size_t at, int, int) { pixels_[at] = kTransparent; });
        if (last_ && last_->disposal == kDisposePrevious) pixels_ = before_;
        before_ = pixels_;
        last_ = &frame;
        const Block& image = animation_.List().blocks[frame.block];
        const Palette colours = ColoursOf(image, palette_);
        ImageLock bitmap(image.data);
        if (bitmap)
            ForEach(frame.area, [&](size_t at, int x, int y) {
                const uint32_t index =
                    GetImagePixel(bitmap, x - GetImageFields(image).left, y - GetImageFields(image).top);
                if (static_cast<int>(index) != frame.transparentIndex) pixels_[at] = PixelOf(colours[index]);
            });
        return pixels_;
    }

private:
    template <typename What>
    void ForEach(const Rectangle& area, What what) const {
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x)
                what(static_cast<size_t>(y) * static_cast<size_t>(animation_.Width()) + static_cast<size_t>(x), x, y);
    }

    const Animation& animation_;
    GlobalPalette palette_;
    std::vector<uint32_t> pixels_, before_;
    const Frame* last_ = nullptr;
};

std::vector<Shown> TimelineOf(const Animation& animation) {
    PlainCanvas canvas(animation);
    std::vector<Shown> timeline;
    for (const Frame& frame : animation.Frames()) {
        const std::vector<uint32_t>& pixels = canvas.Show(frame);
        if (timeline.empty() || timeline.back().canvas != pixels) timeline.push_back({pixels});
        timeline.back().delay += frame.delay;
        timeline.back().played += frame.delay < 2 ? 10 : frame.delay;
    }
    return timeline;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    File file, written;
    file.OpenMemory(data, size);
    BlockList list, smaller;
    ReadReport report;
    Animation before, after;
    if (!CreateBlockList(&list) || ReadGif(&list, file, &report, Manner::kWhole) != kReadDone) return 0;
    if (!before.Open(list, Texts::kLeftOut) || before.Screen().Pixels() > kMostPixels ||
        before.Frames().size() > kMostFrames)
        return 0;
    const OptimiseOptions options = {size % 4 ? Effort::kFast : Effort::kNormal, size % 3 == 0, 1};
    if (Optimise(list, report, options, nullptr, &smaller) != OptimiseResult::kSmaller) return 0;
    assert(after.Open(smaller, Texts::kLeftOut));
    assert(after.Screen() == before.Screen());
    assert(after.Repeats() == before.Repeats());
    assert(TimelineOf(after) == TimelineOf(before));
    assert(*WrittenBytes(smaller) < size);
    assert(!options.keepFrames || after.Frames().size() == before.Frames().size());
    return 0;
}
