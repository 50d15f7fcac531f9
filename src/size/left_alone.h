// Documents whose pictures are not made smaller.
#pragma once

#include "animation/animation.h"
#include "gif/gif_reader.h"

// Why the pictures of a document that was read whole with that report are left alone, for behind "because": damage, or
// what players do not agree about. Null where there is no reason.
const char* WhyLeftAlone(const Animation& animation, const ReadReport& report);
