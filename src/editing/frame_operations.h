// Operations on the frames of a document: images with the controls before them (FindFrames). Frames keep their
// controls, and look as they did (KeepLooks): the ones that stand behind others than before and would look different
// are composed anew.
//
// All that is no frame stays where it is in the list: comments, applications, the loop block, and plain texts with
// their controls, which players do not show. The control of a text would count for an image behind it, too: where
// another image than before comes to stand there, it gets a control of its own that says what it had.
#pragma once

#include <span>

#include "editing/edit_outcome.h"
#include "gif/block_list.h"

// Exchanges the chosen frames with each other so that they come in the opposite order. Each of the numbers comes once
// and is that of a frame.
EditOutcome ReverseFrames(std::span<const uint32_t> frames, BlockList* list);

// Keeps the first of every `every` frames (1 or more). It is shown for as long as players show these together; the
// others go. Refused when that is too long for a delay.
EditOutcome ThinFrames(uint32_t every, BlockList* list);

// Keeps the chosen frames, in the order of the document; the others go.
EditOutcome CutFrames(std::span<const uint32_t> frames, BlockList* list);
