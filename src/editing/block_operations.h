// Putting the blocks of one document into another order, doubling them and taking them out.
//
// Blocks are given by their numbers, each once and each of a block that is there (Selection finds them). The header
// stays where it is. A plain text is a block like any other: it stays or goes as it is chosen.
#pragma once

#include <span>

#include "editing/edit_outcome.h"
#include "gif/block_list.h"

// Whether frames that end up behind others than before are made to look as they did (KeepLooks), or left as they are.
enum class Looks : bool { kLeft, kKept };

// Puts the blocks, in the order given, behind the block `at`, which may be one of them.
EditOutcome MoveBlocks(std::span<const uint32_t> blocks, uint32_t at, Looks looks, BlockList* list);

// Puts copies of them there. The document can't get a second loop block.
EditOutcome DuplicateBlocks(std::span<const uint32_t> blocks, uint32_t at, Looks looks, BlockList* list);

EditOutcome DeleteBlocks(std::span<const uint32_t> blocks, Looks looks, BlockList* list);

// Makes `list` a document of its own blocks in another order (see TakeBlocks). With Looks::kKept each image looks as it
// did at its old place.
EditOutcome ReorderBlocks(std::span<const uint32_t> order, Looks looks, BlockList* list);

// Where the size of the canvas follows the first image, it stays as it was in `old`: gives the header that size. The
// header is that of `old`.
EditOutcome KeepScreen(const BlockList& old, BlockList* list);
