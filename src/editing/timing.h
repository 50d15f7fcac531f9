// How long the frames of a document are shown, in hundredths of a second as its controls have it.
#pragma once

#include <span>

#include "editing/edit_outcome.h"
#include "gif/block_list.h"

// What becomes of delays.
struct Retiming {
    enum Kind : uint8_t {
        kDelay,  // each is `value`
        kScale,  // all are multiplied by value / divisor, so that their sum is, too, to half a hundredth
        kTotal,  // their sum is `value`; each keeps its share of it. Delays of 0 alone share it evenly
        kLeast,  // those below `value` become that
    };
    Kind kind;
    uint32_t value;
    uint32_t divisor = 1;
};

// Retimes the frames of these numbers (as FindFrames counts them; each once). The control that counts for a frame gets
// the delay; a frame without any gets one, when it needs it. Refused when a delay would be more than kMostDelay, and
// when there are no frames.
EditOutcome Retime(std::span<const uint32_t> frames, const Retiming& how, BlockList* list);

// The delay of each frame of `list`: that of the control that counts for it, 0 without one.
std::vector<uint32_t> DelaysOf(const BlockList& list);

// Gives frame i the delay delays[i], as Retime does; `delays` has one for each frame.
EditOutcome SetDelays(std::span<const uint32_t> delays, BlockList* list);
