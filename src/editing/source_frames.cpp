#include "editing/source_frames.h"

#include <utility>

#include "animation/stage.h"
#include "gif/gif_reader.h"

namespace {

using Frames = std::vector<SourceFrame>;

Failure MeaningOf(ReadResult result, const ReadReport& report) {
    if (report.couldNotOpen) return Failure::kCantOpen;
    if (report.couldNotRead) return Failure::kCantRead;
    if (result == kReadNotGif) return Failure::kNotGif;
    return Failure::kNoMemory;
}

// What the canvas shows, as a picture of its own.
Result<FirstImage> TakeCanvas(const CanvasView& canvas) {
    return MakePictureBitmap({canvas.width, canvas.height, reinterpret_cast<const uint8_t*>(canvas.pixels), {}});
}

Result<Frames> Compose(const BlockList& list) {
    Animation animation;
    Stage stage;
    if (!animation.Open(list, Texts::kDrawn)) return Failure::kNoMemory;
    if (animation.Frames().empty() || animation.Screen().IsEmpty()) return Failure::kDamaged;
    if (!FitsCanvas(animation) || animation.Width() > 0xFFFF || animation.Height() > 0xFFFF) return Failure::kTooLarge;
    if (!stage.Open(animation, 0)) return Failure::kNoMemory;
    Frames frames;
    for (uint32_t i = 0; i < animation.Frames().size(); ++i) {
        if (!stage.Show(i)) return Failure::kNoMemory;
        Result<FirstImage> picture = TakeCanvas(stage.Canvas());
        if (!picture) return picture.Why();
        frames.push_back({std::move(*picture), animation.Frames()[i].delay});
    }
    return frames;
}

Result<Frames> ReadAllFrames(const std::string& path) {
    BlockList list;
    ReadReport report = {};
    if (!CreateBlockList(&list)) return Failure::kNoMemory;
    const ReadResult result = ReadGifFile(&list, path.c_str(), &report, Manner::kWhole);
    if (result != kReadDone) return {MeaningOf(result, report), report.reason};
    return Compose(list);
}

Result<bool> IsGif(const std::string& path) {
    File file;
    if (!file.OpenForReading(path.c_str())) return {Failure::kCantOpen, file.Reason()};
    const bool isOther = HoldsOtherPicture(file);
    if (file.HasFailed()) return {Failure::kCantRead, file.Reason()};
    return !isOther;
}

}  // namespace

Result<Frames> ReadSourceFrames(const std::string& path, FramesTaken taken) {
    if (taken == FramesTaken::kAll) {
        const Result<bool> isGif = IsGif(path);
        if (!isGif) return {isGif.Why(), isGif.Reason()};
        if (*isGif) return ReadAllFrames(path);
    }
    Result<FirstImage> picture = ReadFirstImage(path);
    if (!picture) return {picture.Why(), picture.Reason()};
    Frames frames;
    frames.push_back({std::move(*picture), SourceFrame::kNoDelay});
    return frames;
}
