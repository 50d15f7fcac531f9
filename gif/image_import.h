// How an image read from a file joins a document. Implemented above this floor, as it may have to ask the user.
#pragma once

#include "gif/block_list.h"

// Reconciles the palette of `image` (its `data` holds the bitmap, its `palette` the file's colours) with the global
// palette of `document`, and sets the image's size and size code from the bitmap it ends up with. In a document without
// a global palette the image's `palette` becomes its local one.
// False when the insertion is to be abandoned; the caller then releases the block.
bool MatchImportedPalette(WindowHandle owner, BlockList* document, Block* image);
