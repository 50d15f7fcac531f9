// What the block editors ask of blocks and of the whole document, and the one change they make to it beside the edited
// block.
#pragma once

#include "gif/block_list.h"

// Whether some image has no local palette.
bool ImagesUseGlobalPalette(const BlockList& list);

// Whether one of them can't be given one: an image without pixels, of which only the bytes of its file are there.
bool ImagesAreBoundToGlobalPalette(const BlockList& list);

// Gives every image without a local palette, but for those that are bound to the global one, the colours of `palette`
// as its own; size codes stay as they are. Each of them counts as changed then.
void CopyGlobalPaletteToImages(BlockList* list, const Palette& palette);

// Whether a colour of the header's palette, as far as its size code counts them, is not black.
bool HasColours(const Block& header);

// The first image at `from` or later, or the nearest one before `index`, or null. Block 0 is never taken for a previous
// image. The pointers are valid until the list changes.
const Block* FindNextImage(const BlockList& list, uint32_t from);
const Block* FindPreviousImage(const BlockList& list, uint32_t index);

// Whether the file that a comment or plain text was read from has more of its text than the block, which has no room
// for it. Once the block is changed its own text is all there is.
bool IsTextCut(const Block& block);

// The palette of the document's first header, whose depth is 0 when that has none or there is no header.
// (FindGlobalPalette looks on at later headers.)
GlobalPalette GetGlobalPalette(const BlockList& list);

// Lends a control or plain-text block the colours that its indexes stand for: those of the next image, when they are
// its own, or else the global ones. Fills `palette` and `paletteBits`; false, with both unchanged, when there are none.
bool BorrowPalette(Block* block);
