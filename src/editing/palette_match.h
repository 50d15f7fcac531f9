// Images from files joining a document.
#pragma once

#include "editing/questions.h"
#include "gif/block_list.h"
#include "gif/first_image.h"

// Reconciles the palette of `image` (its `data` holds the bitmap, its `palette` the file's colours) with the global
// palette of `document`, and sets the image's size and size code from the bitmap it ends up with. In a document without
// a global palette the image's `palette` becomes its local one; where that was read whole (kReadWhole) nothing is asked
// then. Anything but kNone (kNoBlock without a header,
// kCancelled, kStopped, kNoMemory) means that the image is not to be inserted.
[[nodiscard]] Failure MatchImportedPalette(const BlockList& document, Block* image, Questions& questions);

// The first image of the GIF file at `path` (UTF-8), named after the file, as a block that can join `document`.
// Fails as ReadFirstImage and MatchImportedPalette do.
Result<Block> ImportImage(BlockList* document, const std::string& path, Questions& questions);
