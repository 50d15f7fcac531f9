// The pictures of a file as frames of an animation that is being built.
#pragma once

#include <string>
#include <vector>

#include "gif/first_image.h"

struct SourceFrame {
    FirstImage picture;
    int delayHundredths = kNoDelay;  // that the file gives it

    static constexpr int kNoDelay = -1;
};

// Which pictures of a file count.
enum class FramesTaken : bool {
    kFirst,  // as ReadFirstImage takes it
    kAll,    // of a GIF file what each frame shows, as browsers compose it, with its delay; of any other file the one
};

// Fails as ReadFirstImage does, and with kTooLarge for a GIF file whose frames can't be composed.
Result<std::vector<SourceFrame>> ReadSourceFrames(const std::string& path, FramesTaken taken);
