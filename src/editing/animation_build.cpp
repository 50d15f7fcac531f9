#include "editing/animation_build.h"

#include <algorithm>
#include <new>
#include <span>
#include <utility>

#include "animation/animation.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/logical_screen.h"
#include "imaging/dither.h"
#include "imaging/luminance.h"
#include "imaging/palette_order.h"
#include "imaging/remap.h"
#include "imaging/shared_palette.h"
#include "imaging/standard_palette.h"
#include "platform/parallel.h"

namespace {

// Colours that many frames share come darkest first.
constexpr bool kQuirkSharedPaletteDarkestFirst = true;

// In a result of two colours every pixel becomes the first or the second by its luminance alone. Where that would
// exchange the two colours of a shared palette or make one of them, this depth keeps them: there each has its exact
// match.
constexpr int kQuirkDepthOfLikeColours = 2;

struct AnimationPalette {
    RgbTriples colours = {};
    int depth = 0;  // 1 to 8
};

// A picture on its way to becoming a frame.
struct NewFrame {
    SourceFrame source;
    int depth = 0;                                       // of the palette that it is fitted to
    Result<MemoryHandle> fitted = Failure::kNotAllowed;  // kNotAllowed: not done yet
};

// What a file gave.
struct FileFrames {
    Failure why = Failure::kNone;
    std::string reason;
    std::vector<NewFrame> frames;
};

constexpr uint64_t kMostBytesAhead = uint64_t{256} << 20;  // of pictures that are read at the same time
constexpr uint64_t kPixelBytesAhead = 8;                   // as decoded, and as a bitmap

// For a thread of its own, which may not throw.
void ReadFrames(const std::string& path, FramesTaken taken, FileFrames* read) {
    try {
        Result<std::vector<SourceFrame>> sources = ReadSourceFrames(path, taken);
        read->why = sources.Why();
        read->reason = sources.Reason();
        for (SourceFrame& source : *sources) read->frames.emplace_back().source = std::move(source);
    } catch (const std::bad_alloc&) {
        read->why = Failure::kNoMemory;
        read->frames.clear();
    }
}

// The work on one animation: the settings, whom to ask, and what has been made so far.
class Build {
public:
    Build(const AnimationSettings& settings, Questions& questions) : settings_(settings), questions_(questions) {}

    BuildResult Run(const std::vector<std::string>& files, BlockList* document) {
        result_.outcome = Start(files.empty() ? std::string() : files[0]);
        for (size_t next = 0; next < files.size() && Going();) {
            const size_t count = std::min(filesAhead_, files.size() - next);
            AppendFiles(files, next, count);
            next += count;
        }
        if (Going() && IsShared()) result_.outcome = ShareOnePalette();
        if (Going() && settings_.centres) Centre();
        if (takesAway_) TakeFramesAway();
        if (Going() && !FitLogicalScreen(&draft_)) result_.outcome = BuildOutcome::kListFailed;
        if (!Going()) return result_;
        RenumberBlocks(&draft_);
        *document = std::move(draft_);
        return result_;
    }

private:
    bool Going() const { return result_.outcome == BuildOutcome::kDone; }
    bool IsShared() const { return settings_.matching == PaletteMatching::kSuperPalette; }
    // Whether a click may stop the conversions: then they are made one after the other, each when its turn comes.
    bool MayStop() const { return settings_.matching == PaletteMatching::kPhotorealistic && questions_.MayStop(); }

    BuildOutcome Start(const std::string& firstFile);
    bool ChoosePalette(const std::string& firstFile);
    bool SetGlobalPalette();
    void AppendFiles(const std::vector<std::string>& files, size_t first, size_t count);
    bool PrepareFrames(std::span<FileFrames> files);
    bool MakeRoomForTransparency();
    BuildOutcome AppendFile(const std::string& path, FileFrames* file);
    BuildOutcome AppendFrame(const std::string& path, NewFrame* frame);
    BuildOutcome AppendControl(int delayOfSource);
    BuildOutcome AppendImage(const MemoryHandle& image, const std::string& path);
    BuildOutcome ShareOnePalette();
    bool RemapImages();
    void Centre();
    void TakeFramesAway();
    Result<MemoryHandle> FitToPalette(const MemoryHandle& image, int depth, StopQuestion* stop);

    void Blame(Failure why, const std::string& reason) {
        result_.why = why;
        result_.reason = reason;
    }

    BuildOutcome Append(const Block& block) {
        return AppendBlock(&draft_, block) ? BuildOutcome::kDone : BuildOutcome::kListFailed;
    }

    const AnimationSettings& settings_;
    Questions& questions_;
    BuildResult result_;
    BlockList draft_;
    AnimationPalette palette_;
    std::vector<MemoryHandle> masks_;  // of the images, until they get their shared palette
    int transparentIndex_ = 0;         // of the shared palette
    size_t filesAhead_ = 1;            // as nobody knows how large their pictures are
    bool isTransparent_ = false;       // some picture is
    bool takesAway_ = false;           // each frame before the next
};

BuildOutcome Build::Start(const std::string& firstFile) {
    if (!NewDocument(&draft_)) return BuildOutcome::kOutOfMemory;
    if (!ChoosePalette(firstFile)) return BuildOutcome::kFirstFileUnreadable;
    if (!SetGlobalPalette()) return BuildOutcome::kOutOfMemory;
    return settings_.loops ? Append(MakeLoopBlock(&draft_)) : BuildOutcome::kDone;
}

// The palette that the animation starts from. Fails when it is to be that of the first file and that has no image.
bool Build::ChoosePalette(const std::string& firstFile) {
    int kind = settings_.forWeb ? kPaletteWeb : kPaletteCube;
    if (settings_.matching == PaletteMatching::kSixteenColours) kind = kPaletteSixteen;
    if (settings_.matching == PaletteMatching::kFirstPalette) {
        Result<FirstImage> first = ReadFirstImage(firstFile);
        ImageLock bitmap(first->bitmap);
        if (!bitmap) {
            Blame(first.Why(), first.Reason());
            return false;
        }
        palette_.depth = first->depth;
        GetImagePalette(bitmap, palette_.colours);
        if (palette_.depth <= 8) return true;
        kind = kPaletteCube;
    }
    StandardPalette(palette_.colours, &palette_.depth, kind);
    return true;
}

bool Build::SetGlobalPalette() {
    Block* header = &draft_.All().front();
    HeaderFields fields = GetHeaderFields(*header);
    fields.packed = WithDepth(fields.packed, palette_.depth);
    PutHeaderFields(header, fields);
    return header->palette.Set(palette_.colours);
}

// The image in the colours of the palette. Dithering a long series of photographs takes its time, so it may be
// stopped; the other ways are quick.
Result<MemoryHandle> Build::FitToPalette(const MemoryHandle& image, int depth, StopQuestion* stop) {
    std::optional<ImageInfo> info = GetImageInfo(image);
    if (!info) return Failure::kNoMemory;
    bool photorealistic = settings_.matching == PaletteMatching::kPhotorealistic;
    auto convert = photorealistic && info->bitCount > 4 ? DitherImage : RemapImage;
    return convert(image, palette_.colours, depth, stop);
}

// Reads the files together and fits their pictures to the palette, and then appends them one after the other.
void Build::AppendFiles(const std::vector<std::string>& files, size_t first, size_t count) {
    std::vector<FileFrames> read(count);
    RunInParallel(count, [&](size_t i) { ReadFrames(files[first + i], settings_.taken, &read[i]); });
    if (!PrepareFrames(read)) {
        result_.outcome = BuildOutcome::kOutOfMemory;
        return;
    }
    for (size_t i = 0; i < count && Going(); ++i) {
        result_.file = first + i;
        questions_.OnFile(first + i + 1, files.size());
        result_.outcome = AppendFile(files[first + i], &read[i]);
    }
}

// Decides how many files come next, too: as many as fit into the memory for that.
bool Build::PrepareFrames(std::span<FileFrames> files) {
    uint64_t largest = 1;
    std::vector<NewFrame*> frames;
    for (FileFrames& file : files) {
        for (NewFrame& frame : file.frames) {
            const std::optional<ImageInfo> info = GetImageInfo(frame.source.picture.bitmap);
            if (!info) return false;
            largest = std::max(largest, static_cast<uint64_t>(info->width) * static_cast<uint64_t>(info->height));
            if (frame.source.picture.mask && !MakeRoomForTransparency()) return false;
            frame.depth = palette_.depth;
            frames.push_back(&frame);
        }
    }
    filesAhead_ =
        std::clamp<size_t>(static_cast<size_t>(kMostBytesAhead / kPixelBytesAhead / largest), 1, 2 * ParallelThreads());
    if (IsShared() || MayStop()) return true;
    RunInParallel(frames.size(), [&](size_t i) {
        frames[i]->fitted = FitToPalette(frames[i]->source.picture.bitmap, frames[i]->depth, nullptr);
    });
    return true;
}

bool HasRepeatedColour(const AnimationPalette& palette) {
    for (int i = 1; i < 1 << palette.depth; ++i)
        if (std::find(palette.colours, palette.colours + i, palette.colours[i]) != palette.colours + i) return true;
    return false;
}

// Transparent pixels need an index of their own. A fixed palette of less than 256 colours grows for it, unless it has
// an index to spare.
bool Build::MakeRoomForTransparency() {
    takesAway_ = true;
    if (std::exchange(isTransparent_, true) || IsShared()) return true;
    if (palette_.depth == 8 || HasRepeatedColour(palette_)) return true;
    ++palette_.depth;
    return SetGlobalPalette();
}

int DelayOfRate(uint32_t framesInThousandSeconds, uint64_t frame) {
    constexpr uint64_t kHundredths = 100'000;  // in a thousand seconds
    auto startOf = [&](uint64_t n) { return (2 * n * kHundredths / framesInThousandSeconds + 1) / 2; };
    return static_cast<int>(std::min<uint64_t>(startOf(frame + 1) - startOf(frame), UINT16_MAX));
}

BuildOutcome Build::AppendControl(int delayOfSource) {
    Block control = MakeControlBlock(&draft_);
    ControlFields fields = GetControlFields(control);
    const int delay = DelayOfFrame(settings_, result_.frames++, delayOfSource);
    if (delay != kDelayOfNewBlocks) fields.delay = static_cast<uint16_t>(delay);
    PutControlFields(&control, fields);
    return Append(control);
}

BuildOutcome Build::AppendFile(const std::string& path, FileFrames* file) {
    BuildOutcome outcome = BuildOutcome::kDone;
    for (NewFrame& frame : file->frames) {
        outcome = AppendControl(frame.source.delayHundredths);
        if (outcome == BuildOutcome::kDone) outcome = AppendFrame(path, &frame);
        if (outcome != BuildOutcome::kDone) return outcome;
    }
    if (file->why == Failure::kNone) return outcome;
    outcome = AppendControl(SourceFrame::kNoDelay);
    if (outcome != BuildOutcome::kDone) return outcome;
    if (!questions_.MayLeaveOut(path, file->why)) {
        Blame(file->why, file->reason);
        return BuildOutcome::kFileRefused;
    }
    result_.skipped.push_back(result_.file);
    return BuildOutcome::kDone;
}

// A shared palette is not known yet: until then the images stay as the files have them.
BuildOutcome Build::AppendFrame(const std::string& path, NewFrame* frame) {
    const FirstImage& picture = frame->source.picture;
    if (IsShared()) {
        masks_.push_back(picture.mask);
        return AppendImage(picture.bitmap, path);
    }
    if (MayStop()) frame->fitted = FitToPalette(picture.bitmap, frame->depth, &questions_);
    if (frame->fitted.Why() == Failure::kStopped) return BuildOutcome::kStoppedByUser;
    if (!frame->fitted) return BuildOutcome::kOutOfMemory;
    frame->source.picture.bitmap = nullptr;
    if (!picture.mask) return AppendImage(*frame->fitted, path);
    const int index = SetTransparentPixels(&*frame->fitted, picture.mask, frame->depth);
    if (index == kNoTransparentIndex) return BuildOutcome::kOutOfMemory;
    SetTransparency(&draft_.All().back(), index);
    return AppendImage(*frame->fitted, path);
}

BuildOutcome Build::AppendImage(const MemoryHandle& image, const std::string& path) {
    Result<Block> block = MakeImageBlock(&draft_, image);
    if (!block || !SetBlockNameFromUtf8(path, &*block)) return BuildOutcome::kOutOfMemory;
    return Append(*block);
}

int DepthOfSharedPalette(const SharedPalette& palette, bool isTransparent) {
    // With its transparent index. Two of these would be told by their luminance.
    if (isTransparent) return std::max(DepthForColourCount(palette.count + 1), kQuirkDepthOfLikeColours);
    int depth = DepthForColourCount(palette.count);
    if (depth > 1 || palette.count == 0) return depth;
    auto isLight = [](RgbTriple colour) { return IsLight(colour.red, colour.green, colour.blue); };
    bool told = !isLight(palette.colours[0]) && (palette.count == 1 || isLight(palette.colours[1]));
    return told ? 1 : kQuirkDepthOfLikeColours;
}

bool RemapBlock(const AnimationPalette& palette, Block* block) {
    Result<MemoryHandle> remapped = RemapTrueColours(block->data, palette.colours, palette.depth);
    if (!remapped) return false;
    block->data = *remapped;
    block->palette.Clear();  // it has no colours of its own any more
    ImageFields fields = GetImageFields(*block);
    fields.packed = WithDepth(fields.packed, palette.depth);
    PutImageFields(block, fields);
    return true;
}

// Gives every image the shared palette, and an index of it to the pixels that are transparent.
bool Build::RemapImages() {
    std::vector<uint32_t> images;
    for (uint32_t i = 0; i < draft_.count; ++i)
        if (draft_.blocks[i].kind == kImageBlock) images.push_back(i);
    std::vector<uint8_t> areDone(images.size());
    RunInParallel(images.size(), [&](size_t i) {
        Block& image = draft_.blocks[images[i]];
        areDone[i] = RemapBlock(palette_, &image);
        if (!areDone[i] || !masks_[i]) return;
        const int index = SetTransparentPixels(&image.data, masks_[i], palette_.depth, transparentIndex_);
        areDone[i] = index != kNoTransparentIndex;
        if (areDone[i]) SetTransparency(&draft_.blocks[images[i] - 1], index);
    });
    return std::ranges::all_of(areDone, [](uint8_t isDone) { return isDone != 0; });
}

// Makes one palette of at most 256 colours, darkest first, from all images, makes it the global one and gives it to
// every image. The images become what RemapImage makes of their true colours.
BuildOutcome Build::ShareOnePalette() {
    std::vector<MemoryHandle> images;
    for (const Block& block : draft_.All())
        if (block.kind == kImageBlock) images.push_back(block.data);
    Result<SharedPalette> shared = BuildSharedPalette(kPaletteEntries - isTransparent_, images);
    images.clear();  // so that each goes as soon as its remapped form takes its place
    if (!shared) return BuildOutcome::kOutOfMemory;
    SortPaletteByBrightness(shared->colours, shared->count, kQuirkSharedPaletteDarkestFirst);
    std::ranges::copy(shared->colours, palette_.colours);
    palette_.depth = DepthOfSharedPalette(*shared, isTransparent_);
    // Behind its colours stand copies of the first, which no pixel is ever given.
    transparentIndex_ = shared->count;
    if (isTransparent_) std::fill(palette_.colours + shared->count, std::end(palette_.colours), palette_.colours[0]);
    if (!SetGlobalPalette()) return BuildOutcome::kOutOfMemory;
    return RemapImages() ? BuildOutcome::kDone : BuildOutcome::kOutOfMemory;
}

void Build::Centre() {
    uint16_t width = 0, height = 0;
    for (const Block& block : draft_.All()) {
        if (block.kind != kImageBlock) continue;
        width = std::max(width, GetImageFields(block).width);
        height = std::max(height, GetImageFields(block).height);
    }
    for (Block& block : draft_.All()) {
        if (block.kind != kImageBlock) continue;
        ImageFields fields = GetImageFields(block);
        takesAway_ = takesAway_ || fields.width < width || fields.height < height;
        fields.left = static_cast<uint16_t>((width - fields.width) / 2);
        fields.top = static_cast<uint16_t>((height - fields.height) / 2);
        PutImageFields(&block, fields);
    }
}

// What is transparent would otherwise show the frame before, and so would what is around a smaller picture.
void Build::TakeFramesAway() {
    for (Block& block : draft_.All()) {
        if (block.kind != kControlBlock) continue;
        ControlFields fields = GetControlFields(block);
        fields.packed =
            static_cast<uint8_t>((fields.packed & ~kControlDisposal) | kDisposeBackground << kControlDisposalShift);
        PutControlFields(&block, fields);
    }
}

}  // namespace

int DelayOfFrame(const AnimationSettings& settings, size_t frame, int ofSource) {
    if (settings.keepsSourceDelays && ofSource != SourceFrame::kNoDelay) return ofSource;
    if (settings.framesInThousandSeconds) return DelayOfRate(settings.framesInThousandSeconds, frame);
    if (!settings.delays.empty()) return settings.delays[frame % settings.delays.size()];
    return settings.delayHundredths;
}

BuildResult BuildAnimation(const AnimationSettings& settings, const std::vector<std::string>& files,
                           BlockList* document, Questions& questions) {
    return Build(settings, questions).Run(files, document);
}
