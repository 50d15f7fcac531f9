// The names that a document's BLOCK NAMES block gives to its other blocks.
#pragma once

#include "gif/block_list.h"

// Names the blocks after the first BLOCK NAMES block of the list: each entry of its table names the block at its
// position if that is of its kind; of several entries for one block the first counts. Without a table, or behind the
// point where it is broken, nothing happens. False when memory runs out.
bool ApplyBlockNames(BlockList* list);
