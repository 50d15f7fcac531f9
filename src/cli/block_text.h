// Blocks as text.
#pragma once

#include <string>

#include "gif/block_list.h"

// The line of a block as the editor's list shows it, in UTF-8. Control characters are as they are: see Printable.
std::string LineOf(const Block& block);

// Prints the document so that a comparison of the lines shows what was changed, and where nothing was they are the
// same: of each block all fields, sums of pixels, colours and data, the lines of its text; no numbers of blocks and no
// places in the file. Bytes that belong to no block have a line where a file usually has none. False when memory runs
// out.
[[nodiscard]] bool PrintAsText(const BlockList& list);

// Prints one line for a file that is no GIF file, which another content changes. False, with the reason in `why`, when
// it can't be read.
[[nodiscard]] bool PrintOtherFile(const std::string& path, std::string* why);
