#include "animation/encoded_frames.h"

#include <algorithm>
#include <cstring>

#include "platform/parallel.h"

namespace {

constexpr uint64_t kMostCopiedBytes = uint64_t{256} << 20;  // of canvases that wait to be encoded
constexpr size_t kWaitingAThread = 2;                       // so that no thread waits for another

struct CopiedFrame {
    uint32_t frame = 0;
    Rectangle area;                      // on the screen
    std::unique_ptr<uint32_t[]> pixels;  // a copy of it
    uint64_t room = 0;
    ByteBuffer png;
    bool encoded = false;

    bool Copy(const CanvasView& canvas);
};

bool CopiedFrame::Copy(const CanvasView& canvas) {
    if (area.Pixels() > room) {
        pixels = AllocateScratchArray<uint32_t>(area.Pixels());
        room = pixels ? area.Pixels() : 0;
        if (!pixels) return false;
    }
    const auto width = static_cast<size_t>(area.Width());
    uint32_t* to = pixels.get();
    for (int y = area.top; y < area.bottom; ++y, to += width)
        memcpy(to, canvas.Row(y) + area.left, width * sizeof(uint32_t));
    return true;
}

size_t PicturesAtATime(const Animation& animation, size_t frames) {
    const uint64_t canvasBytes = animation.Screen().Pixels() * sizeof(uint32_t);
    const size_t wanted = ParallelThreads() == 1 ? 1 : ParallelThreads() * kWaitingAThread;
    return std::clamp<size_t>(static_cast<size_t>(kMostCopiedBytes / std::max<uint64_t>(canvasBytes, 1)), 1,
                              std::min(wanted, frames));
}

// A frame that differs in nothing from the one before still needs a pixel.
Rectangle AreaOf(const Stage& stage, bool onlyChanges, bool isFirst) {
    const Rectangle screen = {0, 0, stage.Canvas().width, stage.Canvas().height};
    if (!onlyChanges || isFirst) return screen;
    return stage.Changed().IsEmpty() ? Rectangle{0, 0, 1, 1} : stage.Changed();
}

class Encoding {
public:
    Encoding(std::span<const uint32_t> frames, const FrameWork& work) : frames_(frames), work_(work) {}

    FrameResult Run(const Animation& animation) {
        const size_t atATime = PicturesAtATime(animation, frames_.size());
        pictures_ = std::make_unique<CopiedFrame[]>(atATime);
        if (!stage_.Open(animation, 0)) return FrameResult::kNoMemory;
        for (size_t done = 0; done < frames_.size(); done += atATime) {
            const size_t count = std::min(atATime, frames_.size() - done);
            const FrameResult result = atATime == 1 ? DoOne(done) : DoSome(done, count);
            if (result != FrameResult::kDone) return result;
            if (!GoesOn(work_.watch, done + count, frames_.size())) return FrameResult::kStopped;
        }
        return FrameResult::kDone;
    }

private:
    bool Show(size_t number, CopiedFrame* picture) {
        picture->frame = frames_[number];
        picture->png.Clear();
        if (!stage_.Show(picture->frame)) return false;
        picture->area = AreaOf(stage_, work_.onlyChanges, number == 0);
        return true;
    }

    FrameResult Deliver(const CopiedFrame& picture) {
        if (!picture.encoded) return FrameResult::kNoMemory;
        return work_.deliver(picture.frame, picture.area, picture.png.Content()) ? FrameResult::kDone
                                                                                 : FrameResult::kNotDelivered;
    }

    // Straight from the canvas.
    FrameResult DoOne(size_t number) {
        CopiedFrame& picture = pictures_[0];
        picture.encoded = Show(number, &picture) && work_.encode(stage_.Canvas(), picture.area, &picture.png);
        return Deliver(picture);
    }

    FrameResult DoSome(size_t first, size_t count) {
        for (size_t i = 0; i < count; ++i)
            if (!Show(first + i, &pictures_[i]) || !pictures_[i].Copy(stage_.Canvas())) return FrameResult::kNoMemory;
        RunInParallel(count, [this](size_t i) {
            CopiedFrame& picture = pictures_[i];
            const int width = picture.area.Width(), height = picture.area.Height();
            picture.encoded = work_.encode({picture.pixels.get(), width, height}, {0, 0, width, height}, &picture.png);
        });
        for (size_t i = 0; i < count; ++i)
            if (FrameResult result = Deliver(pictures_[i]); result != FrameResult::kDone) return result;
        return FrameResult::kDone;
    }

    std::span<const uint32_t> frames_;
    const FrameWork& work_;
    std::unique_ptr<CopiedFrame[]> pictures_;
    Stage stage_;
};

}  // namespace

FrameResult EncodeFrames(const Animation& animation, std::span<const uint32_t> frames, const FrameWork& work) {
    return Encoding(frames, work).Run(animation);
}
