// New documents, and the blocks that users create rather than load.
#pragma once

#include "gif/block_list.h"
#include "platform/result.h"

// Makes `list` a document of one header: 640 x 480, with the web palette. False when memory runs out.
[[nodiscard]] bool NewDocument(BlockList* list);

// A new block of its kind, for `list`. They fail with kNoMemory.
Result<Block> MakeHeaderBlock(BlockList* list);
Block MakeControlBlock(BlockList* list);
Block MakeControlBlock(BlockList* list, int transparentIndex);  // for an image that has this one
Result<Block> MakePlainTextBlock(BlockList* list);              // in the brightest colour of the global palette
Result<Block> MakeCommentBlock(BlockList* list);
Block MakeLoopBlock(BlockList* list);

// An IMAGE with this bitmap, whose size and colours it takes; its depth is the bitmap's, or `fileDepth` when that is
// above 0.
Result<Block> MakeImageBlock(BlockList* list, const MemoryHandle& bitmap, int fileDepth = 0);

// A new block of `kind`. Kinds that can't be made without a picture or at all give kNotAllowed.
Result<Block> MakeBlock(BlockList* list, uint16_t kind);

// Size of the grid and the cells of new plain-text blocks.
struct PlainTextGrid {
    uint16_t width, height;         // in characters: 80 x 25 at start
    uint8_t cellWidth, cellHeight;  // in pixels: 8 x 16 at start
};
extern PlainTextGrid defaultPlainTextGrid;
