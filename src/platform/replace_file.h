// Giving a file a new content, all or nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

// The bytes of a file, in parts that follow each other.
using ContentPart = std::span<const uint8_t>;
using FileContent = std::span<const ContentPart>;

inline uint64_t BytesOf(FileContent content) {
    uint64_t bytes = 0;
    for (ContentPart part : content) bytes += part.size();
    return bytes;
}

// Makes `content` the content of the ordinary file at `path` (UTF-8), which need not exist.
//
// They are written to a new file of an unguessable name in the same folder, which then takes the place of the old one
// with its mode and owner; on a failure, or an interrupt by the user, it goes again and the old file stands. Symbolic
// links stay and the file that they lead to is replaced. A file with several names, and one whose folder takes no new
// file (`folderRefused` is set then), is written in place, once the space for it is there.
//
// What replaces nothing waits for the disk only when it `flushesNew`; a crash may cost it then, and nothing else.
//
// Returns 0, or the system's number for why it failed.
[[nodiscard]] int ReplaceFileContent(const char* path, FileContent content, bool flushesNew, bool* folderRefused);
