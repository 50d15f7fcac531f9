// The logical screen that the images of a document need.
#pragma once

#include "gif/block_list.h"

// Sets the header's screen size to the right and bottom edge that the images reach; a direction in which they reach
// nothing keeps its size. False when the document has no block 0.
bool FitLogicalScreen(BlockList* list);
