// What a saved file does not keep, or keeps from others.
#pragma once

#include <string>
#include <vector>

#include "gif/block_list.h"

// The numbers of the blocks that a command changed or made. A changed header touches all images, as it may have changed
// the screen.
using TouchedBlocks = std::vector<uint32_t>;

// Of `count` blocks from number `first` on.
TouchedBlocks BlocksFrom(uint32_t first, uint32_t count);

// Tells on standard error, in one line for each kind of trouble, which blocks of the document just saved to `path` in
// this manner will not be read back as they are.
void WarnOfLosses(const BlockList& list, const std::string& path, Manner manner);

// Tells in the same way of images among the blocks touched that reach beyond the logical screen.
void WarnOfImagesBeyondScreen(const BlockList& list, const std::string& path, const TouchedBlocks& touched);
