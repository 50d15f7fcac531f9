#include "editing/animation_build.h"

#include "editing/animation_frame.h"
#include "editing/animation_palette.h"
#include "editing/animation_shared_palette.h"
#include "gif/default_blocks.h"
#include "gif/logical_screen.h"

namespace {

// Moves what was built into `document`.
bool HandOver(BlockList* draft, BlockList* document) {
    auto adopt = [&](Block& block, uint32_t) {
        block.owner = document;
        return true;
    };
    if (!RenumberBlocks(draft) || !ForEachBlock(*draft, adopt)) return false;
    *document = *draft;
    *draft = {};
    return true;
}

BuildOutcome Start(WindowHandle owner, const AnimationSettings& settings, const std::string& firstFile,
                   BlockList* document, AnimationPalette* palette) {
    if (!NewDocument(document)) return BuildOutcome::kOutOfMemory;
    if (!ChooseAnimationPalette(owner, settings, firstFile, palette)) return BuildOutcome::kFirstFileUnreadable;
    if (!SetGlobalPalette(document, *palette)) return BuildOutcome::kListFailed;
    if (!settings.loops) return BuildOutcome::kDone;
    Block loop;
    if (!MakeDefaultBlock(owner, document, &loop, kLoopBlock, nullptr, nullptr)) return BuildOutcome::kOutOfMemory;
    return AppendBlock(document, &loop) ? BuildOutcome::kDone : BuildOutcome::kListFailed;
}

BuildOutcome AppendFrames(WindowHandle owner, const AnimationSettings& settings, const std::vector<std::string>& files,
                          const AnimationPalette& palette, const BuildProgress& progress, BlockList* document,
                          BuildResult* result) {
    for (size_t i = 0; i < files.size(); ++i) {
        result->file = i;
        if (progress) progress(static_cast<int>(i + 1), static_cast<int>(files.size()));
        bool skipped;
        BuildOutcome outcome = AppendFrame(owner, settings, palette, files[i], document, &skipped);
        if (outcome != BuildOutcome::kDone) return outcome;
        if (skipped) result->skipped.push_back(i);
    }
    return BuildOutcome::kDone;
}

BuildOutcome Finish(PaletteMatching matching, BlockList* draft, BlockList* document) {
    if (matching == PaletteMatching::kSuperPalette) {
        BuildOutcome outcome = ShareOnePalette(draft);
        if (outcome != BuildOutcome::kDone) return outcome;
    }
    bool done = FitLogicalScreen(draft) && HandOver(draft, document);
    return done ? BuildOutcome::kDone : BuildOutcome::kListFailed;
}

}  // namespace

BuildResult BuildAnimation(WindowHandle owner, const AnimationSettings& settings, const std::vector<std::string>& files,
                           BlockList* document, const BuildProgress& progress) {
    BuildResult result;
    OwnedBlockList draft;
    AnimationPalette palette;
    const std::string firstFile = files.empty() ? std::string() : files[0];
    result.outcome = Start(owner, settings, firstFile, &draft, &palette);
    if (result.outcome == BuildOutcome::kDone)
        result.outcome = AppendFrames(owner, settings, files, palette, progress, &draft, &result);
    if (result.outcome == BuildOutcome::kDone) result.outcome = Finish(settings.matching, &draft, document);
    return result;
}
