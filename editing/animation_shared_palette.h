// The palette made from all frames of a new animation. Part of editing/animation_build.h.
#pragma once

#include "gif/block_list.h"

#include "editing/animation_build.h"

// Makes one palette of at most 256 colours, darkest first, from all images of the document, makes it the global one and
// gives it to every image. The images have any number of bits and become what RemapImage makes of their true colours.
BuildOutcome ShareOnePalette(BlockList* document);
