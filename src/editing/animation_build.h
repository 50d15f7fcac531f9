// Building a whole animation from picture files: the Animation Wizard without its dialog.
#pragma once

#include <string>
#include <vector>

#include "editing/questions.h"
#include "gif/block_list.h"

// Whose colours the frames get.
enum class PaletteMatching {
    kSuperPalette,    // one palette made from all frames
    kFirstPalette,    // that of the first file
    kPhotorealistic,  // a fixed palette, dithered
    kDrawn,           // a fixed palette, each pixel the nearest colour
    kSixteenColours,  // the sixteen standard colours, each pixel the nearest
};

constexpr int kDelayOfNewBlocks = -1;

struct AnimationSettings {
    bool forWeb = true;  // the fixed palette is that of the 216 web colours; otherwise a cube of 256
    bool loops = true;   // for ever; otherwise the animation plays once
    PaletteMatching matching = PaletteMatching::kSuperPalette;
    int delayHundredths = kDelayOfNewBlocks;  // of each frame, 0 to 65535; or what a new control block has
};

enum class BuildOutcome {
    kDone,
    kOutOfMemory,
    kListFailed,           // a block could not be stored in the document
    kFirstFileUnreadable,  // whose palette was to be everybody's
    kFileRefused,          // without an image, and the user did not want to go on without it
    kStoppedByUser,        // during a conversion
};

struct BuildResult {
    BuildOutcome outcome = BuildOutcome::kDone;
    Failure why = Failure::kNone;  // of the file that was refused, or of the first one
    std::string reason;            // the system's words for it, if any
    std::vector<size_t> skipped;   // files (counted from 0) without a readable image that were left out
    size_t file = 0;               // the one that the build was at when it ended
};

// Builds the document HEADER, LOOP (if it loops), then CONTROL and IMAGE of each of `files` (UTF-8 paths), with the
// screen fitted to the images. A file without a readable image is asked about; when it is left out, its CONTROL stays.
// `document` is filled only when the outcome is kDone; what it held before is released then.
BuildResult BuildAnimation(const AnimationSettings& settings, const std::vector<std::string>& files,
                           BlockList* document, Questions& questions);
