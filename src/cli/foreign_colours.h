// The options "--remap", "--dither" and "--keep" of the commands that bring images of other colours into a document.
#pragma once

#include <string>

#include "cli/options.h"
#include "editing/block_copy.h"

// Reads which of them is given; ForeignColours::kRefuse without any. Returns what is wrong with them, or an empty text.
std::string ReadForeignColours(const Options& options, ForeignColours* colours);
