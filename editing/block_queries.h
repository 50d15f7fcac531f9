// What the block editors ask of the whole document, and the one change they make to it beside the edited block.
#pragma once

#include "gif/block_list.h"

// Copies the document's first header into `header`; false when there is none or it can't be read.
bool GetHeader(const BlockList& list, Block* header);

// Whether some image has no local palette.
bool ImagesUseGlobalPalette(const BlockList& list);

// Gives every image without a local palette the 256 colours of `palette` as its own; size codes stay as they are.
// False as soon as a block can't be read or written; the images before it then keep what they got.
[[nodiscard]] bool CopyGlobalPaletteToImages(BlockList* list, const RgbTriple* palette);

// Whether a colour of the header's palette, as far as its size code counts them, is not black.
bool HasColours(const Block& header);

// Copy the first image at `from` or later, or the nearest one before `index`, into `image`, which borrows its handles.
// Block 0 is never taken for a previous image. False when there is none; `image` is then unspecified.
bool FindNextImage(const BlockList& list, uint32_t from, Block* image);
bool FindPreviousImage(const BlockList& list, uint32_t index, Block* image);

// Copies the palette of the document's first header into `palette` (256 entries, or null for none) and returns its bit
// depth (1 to 8), or 0, with nothing copied, when that header has no palette or there is none.
// (FindGlobalPalette looks on at later headers.)
int GetGlobalPalette(const BlockList& list, RgbTriple* palette);

// Lends a control or plain-text block the colours that its indexes stand for: those of the next image, when they are
// its own, or else the global ones. Fills `palette` and `paletteBits`; false, with both unchanged, when there are none.
bool BorrowPalette(Block* block);
