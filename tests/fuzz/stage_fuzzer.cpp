// Any bytes as an animation: composing must not crash or draw outside of what it says has changed, and every frame must
// look the same whichever way one gets there.
#undef NDEBUG  // the checks hold in every build
#include <cassert>
#include <vector>

#include "animation/stage.h"
#include "gif/gif_reader.h"

namespace {

constexpr uint64_t kMostPixels = 1u << 18;  // larger canvases only take longer
constexpr size_t kMostFrames = 100;

uint64_t SumOf(const CanvasView& canvas, const Rectangle& leftOut) {
    uint64_t sum = 0;
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x)
            if (Common(leftOut, {x, y, x + 1, y + 1}).IsEmpty())
                sum = (sum ^ canvas.Row(y)[x]) * 0x100000001B3u + static_cast<unsigned>(x);
    return sum;
}

// A canvas as it was, to see what has changed.
struct Copy {
    explicit Copy(const CanvasView& canvas)
        : pixels(canvas.pixels, canvas.pixels + static_cast<size_t>(canvas.width) * static_cast<size_t>(canvas.height)),
          view{pixels.data(), canvas.width, canvas.height} {}
    std::vector<uint32_t> pixels;
    CanvasView view;
};

void Compose(const Animation& animation, size_t frames, uint64_t seed) {
    Stage forwards, anyhow;
    if (!forwards.Open(animation, 0) || !anyhow.Open(animation, (seed % 8) * animation.Screen().Pixels() * 4)) return;
    std::vector<uint64_t> sums;
    for (uint32_t frame = 0; frame < frames; ++frame) {
        const Copy before(forwards.Canvas());
        if (!forwards.Show(frame)) return;
        const Rectangle changed = forwards.Changed();
        assert(Common(changed, animation.Screen()) == changed || changed.IsEmpty());
        assert(SumOf(before.view, changed) == SumOf(forwards.Canvas(), changed));
        sums.push_back(SumOf(forwards.Canvas(), {}));
    }
    for (uint32_t step = 0; step < 20 && frames > 0; ++step) {
        const auto frame = static_cast<uint32_t>((seed / 8 + uint64_t{step} * 7919) % frames);
        if (!anyhow.Show(frame)) return;
        assert(SumOf(anyhow.Canvas(), {}) == sums[frame]);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    File file;
    file.OpenMemory(data, size);
    BlockList list;
    Animation animation;
    if (!CreateBlockList(&list) || ReadGif(&list, file, nullptr, Manner::kWhole) != kReadDone) return 0;
    for (Texts texts : {Texts::kLeftOut, Texts::kDrawn}) {
        if (!animation.Open(list, texts) || animation.Screen().Pixels() > kMostPixels) return 0;
        Compose(animation, std::min(animation.Frames().size(), kMostFrames), size * 31 + data[size - 1]);
    }
    return 0;
}
