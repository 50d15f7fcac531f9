// The proof that two documents play the same.
#pragma once

#include "gif/block_list.h"

enum class Likeness : uint8_t { kAlike, kDifferent, kNoMemory };

// Whether browsers show both documents alike, by the rules of animation.h: the same screen, the same number of plays,
// the same canvases, each for the same time, that of the file as well as that of players which stretch short delays.
// Frames that show the same count as one. Texts are left out, as browsers do.
Likeness PlaysAlike(const BlockList& one, const BlockList& other);
