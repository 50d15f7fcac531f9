// The blocks that the user creates rather than loads.
#pragma once

#include "gif/block_list.h"

// Makes `list` a new document: one default header (640 x 480, the 216-colour web palette).
// False, with nothing left behind, when memory runs out.
[[nodiscard]] bool NewDocument(BlockList* list);

// Fills `block` with the defaults of `kind` for `list`. An IMAGE takes over `bitmap`, or, with none given, reads the
// first image of the GIF file at `path` (null: the user is asked for one) and fits it to the document's palette; either
// way `path` names the block. False, with `block` zeroed and `bitmap` released, when that fails or the kind can't be
// made (EMPTY, APPLICATION-DEFINED and those above LOOP). Memory running out for a text or the
// name is told to the user.
[[nodiscard]] bool MakeDefaultBlock(WindowHandle owner, BlockList* list, Block* block, uint16_t kind,
                                    MemoryHandle bitmap, const char* path);

// The grid that new plain-text blocks get; the plain-text editor changes it.
struct PlainTextGrid {
    uint16_t width, height;         // in characters: 80 x 25 at start
    uint8_t cellWidth, cellHeight;  // in pixels: 8 x 16 at start
};
extern PlainTextGrid defaultPlainTextGrid;
