// The comment that tells who made a file.
#pragma once

#include <string_view>

#include "gif/block_list.h"
#include "platform/file.h"
#include "platform/identity.h"

// Whether some COMMENT block's text is exactly `text`.
bool HasIdenticalComment(const BlockList& list, std::string_view text);

// Writes the file-identity comment with the names of `user`, unless the document carries it already. False when a block
// can't be read, on a failed write, and when memory runs out.
[[nodiscard]] bool WriteIdentity(File& file, const BlockList& list, const Identity& user, Manner manner);
