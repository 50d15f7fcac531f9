#include "editing/animation_build.h"

#include <algorithm>
#include <span>

#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/first_image.h"
#include "gif/logical_screen.h"
#include "imaging/dither.h"
#include "imaging/luminance.h"
#include "imaging/palette_order.h"
#include "imaging/remap.h"
#include "imaging/shared_palette.h"
#include "imaging/standard_palette.h"

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

// The work on one animation: the settings, whom to ask, and what has been made so far.
class Build {
public:
    Build(const AnimationSettings& settings, Questions& questions) : settings_(settings), questions_(questions) {}

    BuildResult Run(const std::vector<std::string>& files, BlockList* document) {
        result_.outcome = Start(files.empty() ? std::string() : files[0]);
        for (size_t i = 0; i < files.size() && Going(); ++i) {
            result_.file = i;
            questions_.OnFile(i + 1, files.size());
            result_.outcome = AppendFrame(files[i]);
        }
        if (Going() && settings_.matching == PaletteMatching::kSuperPalette) result_.outcome = ShareOnePalette();
        if (Going() && !FitLogicalScreen(&draft_)) result_.outcome = BuildOutcome::kListFailed;
        if (!Going()) return result_;
        RenumberBlocks(&draft_);
        *document = std::move(draft_);
        return result_;
    }

private:
    bool Going() const { return result_.outcome == BuildOutcome::kDone; }

    BuildOutcome Start(const std::string& firstFile);
    bool ChoosePalette(const std::string& firstFile);
    bool SetGlobalPalette();
    BuildOutcome AppendFrame(const std::string& path);
    BuildOutcome AppendImage(const MemoryHandle& image, const std::string& path);
    BuildOutcome ShareOnePalette();
    Result<MemoryHandle> FitToPalette(const MemoryHandle& image);

    void Blame(const Result<FirstImage>& picture) {
        result_.why = picture.Why();
        result_.reason = picture.Reason();
    }

    BuildOutcome Append(const Block& block) {
        return AppendBlock(&draft_, block) ? BuildOutcome::kDone : BuildOutcome::kListFailed;
    }

    const AnimationSettings& settings_;
    Questions& questions_;
    BuildResult result_;
    BlockList draft_;
    AnimationPalette palette_;
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
            Blame(first);
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
Result<MemoryHandle> Build::FitToPalette(const MemoryHandle& image) {
    std::optional<ImageInfo> info = GetImageInfo(image);
    if (!info) return Failure::kNoMemory;
    bool photorealistic = settings_.matching == PaletteMatching::kPhotorealistic;
    auto convert = photorealistic && info->bitCount > 4 ? DitherImage : RemapImage;
    return convert(image, palette_.colours, palette_.depth, photorealistic ? &questions_ : nullptr);
}

// A shared palette is not known yet: until then the images stay as the files have them.
BuildOutcome Build::AppendFrame(const std::string& path) {
    Block control = MakeControlBlock(&draft_);
    ControlFields fields = GetControlFields(control);
    if (settings_.delayHundredths != kDelayOfNewBlocks) fields.delay = static_cast<uint16_t>(settings_.delayHundredths);
    PutControlFields(&control, fields);
    BuildOutcome outcome = Append(control);
    if (outcome != BuildOutcome::kDone) return outcome;

    Result<FirstImage> picture = ReadFirstImage(path);
    if (!picture) {
        if (!questions_.MayLeaveOut(path, picture.Why())) {
            Blame(picture);
            return BuildOutcome::kFileRefused;
        }
        result_.skipped.push_back(result_.file);
        return BuildOutcome::kDone;
    }
    if (settings_.matching == PaletteMatching::kSuperPalette) return AppendImage(picture->bitmap, path);
    Result<MemoryHandle> fitted = FitToPalette(picture->bitmap);
    if (fitted) return AppendImage(*fitted, path);
    return fitted.Why() == Failure::kStopped ? BuildOutcome::kStoppedByUser : BuildOutcome::kOutOfMemory;
}

BuildOutcome Build::AppendImage(const MemoryHandle& image, const std::string& path) {
    Result<Block> block = MakeImageBlock(&draft_, image);
    if (!block || !SetBlockNameFromUtf8(path, &*block)) return BuildOutcome::kOutOfMemory;
    return Append(*block);
}

int DepthOfSharedPalette(const SharedPalette& palette) {
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

// Makes one palette of at most 256 colours, darkest first, from all images, makes it the global one and gives it to
// every image. The images become what RemapImage makes of their true colours.
BuildOutcome Build::ShareOnePalette() {
    std::vector<MemoryHandle> images;
    for (const Block& block : draft_.All())
        if (block.kind == kImageBlock) images.push_back(block.data);
    Result<SharedPalette> shared = BuildSharedPalette(kPaletteEntries, images);
    images.clear();  // so that each goes as soon as its remapped form takes its place
    if (!shared) return BuildOutcome::kOutOfMemory;
    SortPaletteByBrightness(shared->colours, shared->count, kQuirkSharedPaletteDarkestFirst);
    std::ranges::copy(shared->colours, palette_.colours);
    palette_.depth = DepthOfSharedPalette(*shared);
    if (!SetGlobalPalette()) return BuildOutcome::kOutOfMemory;
    bool remapped = std::ranges::all_of(
        draft_.All(), [&](Block& block) { return block.kind != kImageBlock || RemapBlock(palette_, &block); });
    return remapped ? BuildOutcome::kDone : BuildOutcome::kOutOfMemory;
}

}  // namespace

BuildResult BuildAnimation(const AnimationSettings& settings, const std::vector<std::string>& files,
                           BlockList* document, Questions& questions) {
    return Build(settings, questions).Run(files, document);
}
