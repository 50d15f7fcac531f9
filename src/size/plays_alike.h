// The proof that two documents play the same.
#pragma once

#include <atomic>

#include "gif/block_list.h"

enum class Likeness : uint8_t { kAlike, kDifferent, kNoMemory, kStopped };

// How to look. `*stop` becomes true when the answer is no longer wanted.
struct LookOptions {
    size_t threads = 1;
    const std::atomic<bool>* stop = nullptr;

    bool StopRequested() const { return stop && *stop; }
};

// Whether browsers show both documents alike, by the rules of animation.h: the same screen, the same number of plays,
// the same canvases, each for the same time, that of the file as well as that of players which stretch short delays.
// Frames that show the same count as one. Texts are left out, as browsers do.
Likeness PlaysAlike(const BlockList& first, const BlockList& second, const LookOptions& options = {});

// How far what is shown lies from what was to be shown.
struct Loss {
    int largest = 0;  // difference of red, green or blue, of any pixel in any frame
    double mean = 0;  // of that difference, over all pixels and the time that they show
};

// Whether `second` shows what `first` does but for colours, which may be up to `most` apart (ColourDistance), at every
// hundredth of a second; frames of `first` may be missing where the ones before them are near enough. What is
// transparent has to be so in both. `*loss` tells how near they are. One thread looks.
Likeness PlaysNearly(const BlockList& first, const BlockList& second, int most, Loss* loss,
                     const LookOptions& options = {});
