// Numbers that say what blocks have in common: blocks that are alike have the same, others hardly ever.
#pragma once

#include <cstdint>

#include "gif/block.h"

// Throw std::bad_alloc when memory runs out.
uint64_t LabelOfSource(const Block& block);   // the bytes of its file; without any as LabelOfContent
uint64_t LabelOfContent(const Block& block);  // everything that it says, its name too
uint64_t LabelOfBody(const Block& block);     // its pixels, text or data, whatever its fields say
uint64_t LabelOfShape(const Block& block);    // the size of a picture, whose data it is
uint64_t LabelOfKind(const Block& block);
