#include "editing/animation_frame.h"

#include "editing/palette_match.h"
#include "gif/default_blocks.h"
#include "gif/descriptor.h"
#include "gif/first_image.h"
#include "imaging/dither.h"
#include "imaging/remap.h"
#include "platform/prompts.h"
#include "resources/string_ids.h"

namespace {

// Appends the block, or releases it.
BuildOutcome Append(BlockList* document, Block* block) {
    if (AppendBlock(document, block)) return BuildOutcome::kDone;
    FreeBlock(block);
    return BuildOutcome::kListFailed;
}

BuildOutcome AppendControl(int delayHundredths, BlockList* document) {
    Block block;
    if (!MakeDefaultBlock(nullptr, document, &block, kControlBlock, nullptr, nullptr))
        return BuildOutcome::kOutOfMemory;
    ControlFields fields = GetControlFields(block);
    if (delayHundredths != kDelayOfNewBlocks) fields.delay = static_cast<uint16_t>(delayHundredths);
    PutControlFields(&block, fields);
    return Append(document, &block);
}

// Replaces the image by one in the colours of `palette`. Dithering a long series of photographs takes its time, so a
// click stops it; the other ways are quick.
BuildOutcome FitToPalette(PaletteMatching matching, const AnimationPalette& palette, OwnedMemory* image) {
    int bitCount;
    if (!GetImageInfo(image->Get(), nullptr, nullptr, &bitCount, nullptr)) return BuildOutcome::kOutOfMemory;
    bool photorealistic = matching == PaletteMatching::kPhotorealistic;
    auto convert = photorealistic && bitCount > 4 ? DitherImage : RemapImage;
    image->Reset(convert(image->Get(), palette.colours, palette.depth, photorealistic ? kMayBeAborted : 0));
    if (*image) return BuildOutcome::kDone;
    return abortStatus == kAbortedByUser ? BuildOutcome::kStoppedByUser : BuildOutcome::kOutOfMemory;
}

BuildOutcome AppendImage(OwnedMemory* image, const std::string& path, BlockList* document) {
    Block block;
    if (!MakeDefaultBlock(nullptr, document, &block, kImageBlock, image->Release(), nullptr))
        return BuildOutcome::kOutOfMemory;
    if (SetBlockNameFromUtf8(path, &block)) return Append(document, &block);
    FreeBlock(&block);
    return BuildOutcome::kOutOfMemory;
}

}  // namespace

BuildOutcome AppendFrame(WindowHandle owner, const AnimationSettings& settings, const AnimationPalette& palette,
                         const std::string& path, BlockList* document, bool* skipped) {
    *skipped = false;
    BuildOutcome outcome = AppendControl(settings.delayHundredths, document);
    if (outcome != BuildOutcome::kDone) return outcome;

    int depth;
    OwnedMemory image(ReadFirstImage(owner, path.c_str(), &depth));
    if (!image) {
        *skipped = AskYesNo(owner, LoadStr(IDS_CORRUPTED_FILE)) == kAnswerYes;
        return *skipped ? BuildOutcome::kDone : BuildOutcome::kCorruptedFileRefused;
    }
    if (settings.matching == PaletteMatching::kSuperPalette)
        paletteChoiceForInsert = kPaletteKeep;
    else
        outcome = FitToPalette(settings.matching, palette, &image);
    return outcome == BuildOutcome::kDone ? AppendImage(&image, path, document) : outcome;
}
