// Commands that work on one image of a document.
#pragma once

#include <string>

#include "cli/document.h"

// Opens the file, as `options` say, and fetches its block number `index`, which must be an image. `image` borrows its
// handles from `document`. False, with the reason on standard error, when that fails.
bool OpenImageBlock(const std::string& path, uint32_t index, const Options& options, Document* document, Block* image);
