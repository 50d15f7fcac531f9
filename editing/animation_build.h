// Building a whole animation from picture files: the Animation Wizard without its dialog.
#pragma once

#include <functional>
#include <string>
#include <vector>

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
    kListFailed,            // a block could not be stored in the document or fetched from it
    kFirstFileUnreadable,   // whose palette was to be everybody's
    kCorruptedFileRefused,  // the user did not want to go on without that file
    kStoppedByUser,         // with a click during a conversion
};

struct BuildResult {
    BuildOutcome outcome = BuildOutcome::kDone;
    std::vector<size_t> skipped;  // files (counted from 0) without a readable image that the user agreed to leave out
    size_t file = 0;              // the one that the build was at when it ended
};

// Told before each file is read, with its number counted from 1 and that of all files.
using BuildProgress = std::function<void(int frame, int count)>;

// Builds the document HEADER, LOOP (if it loops), then CONTROL and IMAGE of each of `files` (UTF-8 paths), with the
// screen fitted to the images. A file without a readable image is asked about with AskYesNo; when it is left out, its
// CONTROL stays. `document` comes empty, without memory of its own; it is filled only when the outcome is kDone, and
// after any other nothing of the build is left. No message is shown but that question.
BuildResult BuildAnimation(WindowHandle owner, const AnimationSettings& settings, const std::vector<std::string>& files,
                           BlockList* document, const BuildProgress& progress = {});
