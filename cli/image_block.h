// Commands that work on one image of a document.
#pragma once

#include <string>

#include "cli/document.h"

// Opens the file and fetches its block number `index` (a decimal text), which must be an image. `image` borrows its
// handles from `document`. False, with the reason on standard error, when that fails.
bool OpenImageBlock(const std::string& path, const std::string& index, Document* document, Block* image);
