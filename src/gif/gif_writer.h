// Writing block lists as GIF89a files.
#pragma once

#include <string>

#include "gif/block_list.h"
#include "gif/identity_comment.h"
#include "platform/file.h"
#include "platform/identity.h"

// Writes the document into a file that has been created: header, blocks, the file-identity comment with the names of
// `user` unless the document carries it already, trailer. False on failure (of the file, of memory, or when the
// document has no header, which is noticed before anything is written); closing the file is the caller's.
[[nodiscard]] bool WriteGif(const BlockList& list, File& file, const Identity& user);

// Saves the document at `path` (UTF-8) with the names of the system's user, straight over what stands there. False on
// failure; the file is then removed, except when the document has no header, which is noticed before the file is
// touched.
[[nodiscard]] bool WriteGifFile(const BlockList& list, const char* path);

// The same in the whole manner: blocks that nobody changed as the file had them, the others encoded anew, with what the
// list keeps before and behind them. A comment with `names` is added only when they are given (null: none).
[[nodiscard]] bool WriteWholeGif(const BlockList& list, File& file, const Identity* names);

// Saves the document at `path` in the whole manner: written beside it, flushed to the disk and renamed, so that after a
// failure what stood there stands. False then, with the system's words in `reason`, if it has any.
[[nodiscard]] bool WriteWholeGifFile(const BlockList& list, const char* path, std::string* reason);
