// Writing documents in the whole manner.
#pragma once

#include "gif/block_list.h"
#include "platform/file.h"
#include "platform/identity.h"

// Writes a document that has a header, as WriteWholeGif says.
[[nodiscard]] bool WriteWholeDocument(const BlockList& list, File& file, const Identity* names);

// Writes the block's own bytes as its file had them. When `isFollowed`, a block that the end of that file cut off is
// brought to its end first: as short as it is, with what its kind needs, so that nothing behind it is taken for a part
// of it. False on a failed write or lock, and for a block without such bytes.
[[nodiscard]] bool WriteSource(File& file, const Block& block, bool isFollowed);

// Writes one block of a document as WriteWholeDocument does, with the bytes before it that start none. `isFollowed`:
// something stands behind it.
[[nodiscard]] bool WriteWholeBlock(File& file, const Block& block, bool isFollowed);

// Whether something stands behind the last block of a document that is written without names.
bool IsLastBlockFollowed(const BlockList& list);
