// Images from files joining a document.
#pragma once

#include <vector>

#include "editing/questions.h"
#include "gif/block_list.h"
#include "gif/first_image.h"

// Reconciles the palette of `image` (its `data` holds the bitmap, its `palette` the file's colours) with the global
// palette of `document`, and sets the image's size and size code from the bitmap it ends up with. In a document without
// a global palette the image's `palette` becomes its local one; where that was read whole (kReadWhole) nothing is asked
// then. An image of true colours that keeps its colours gets the best 256 of them. Anything but kNone (kNoBlock without
// a header, kCancelled, kStopped, kNoMemory) means that the image is not to be inserted.
[[nodiscard]] Failure MatchImportedPalette(const BlockList& document, Block* image, Questions& questions);

// The picture as blocks that can join `document`: its image, behind a control that tells its transparent index when
// the picture is transparent somewhere. Fails as MatchImportedPalette does.
Result<std::vector<Block>> ImportPicture(BlockList* document, const FirstImage& picture, Questions& questions);

// The picture in the file at `path` (UTF-8), named after the file, as blocks that can join `document`: its image,
// behind a control that tells its transparent index when the picture is transparent somewhere (never that of a GIF
// file). Fails as ReadFirstImage and MatchImportedPalette do.
Result<std::vector<Block>> ImportImage(BlockList* document, const std::string& path, Questions& questions);
