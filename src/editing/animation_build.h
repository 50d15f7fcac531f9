// Building a whole animation from picture files: the Animation Wizard without its dialog.
#pragma once

#include <string>
#include <vector>

#include "editing/questions.h"
#include "editing/source_frames.h"
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
    std::vector<uint16_t> delays = {};        // instead: of the first frames, and from the front again
    uint32_t framesInThousandSeconds = 0;     // instead, if not 0: delays that keep this rate in the long run
    bool keepsSourceDelays = false;           // those that the files give their frames come before all that
    FramesTaken taken = FramesTaken::kFirst;
    bool centres = false;  // smaller pictures in the middle of the largest
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
    size_t frames = 0;             // with those that were left out
};

// The delay that frame number `frame` (from 0) gets, of which its file says `ofSource` or SourceFrame::kNoDelay.
// kDelayOfNewBlocks where the settings want that.
int DelayOfFrame(const AnimationSettings& settings, size_t frame, int ofSource);

// Builds the document HEADER, LOOP (if it loops), then CONTROL and IMAGE of each of `files` (UTF-8 paths), with the
// screen fitted to the images. A file without a readable image is asked about; when it is left out, its CONTROL stays.
// Pictures that are transparent somewhere keep that: their CONTROL has the index, which no other pixel of theirs has.
// When there are any, or centred pictures are of different sizes, each frame is taken away before the next one shows.
// `document` is filled only when the outcome is kDone; what it held before is released then.
BuildResult BuildAnimation(const AnimationSettings& settings, const std::vector<std::string>& files,
                           BlockList* document, Questions& questions);
