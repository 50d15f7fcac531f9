// Giving a file a new content, all or nothing.
#pragma once

#include <cstddef>

// Makes the `bytes` bytes at `content` the content of the ordinary file at `path` (UTF-8), which need not exist.
//
// They are written to a new file of an unguessable name in the same folder, which then takes the place of the old one
// with its mode and owner; on a failure, or an interrupt by the user, it goes again and the old file stands. Symbolic
// links stay and the file that they lead to is replaced. A file with several names, and one whose folder takes no new
// file (`folderRefused` is set then), is written in place, once the space for it is there.
//
// What replaces nothing waits for the disk only when it `flushesNew`; a crash may cost it then, and nothing else.
//
// Returns 0, or the system's number for why it failed.
[[nodiscard]] int ReplaceFileContent(const char* path, const void* content, size_t bytes, bool flushesNew,
                                     bool* folderRefused);
