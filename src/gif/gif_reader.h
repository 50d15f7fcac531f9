// Reading GIF files into block lists.
#pragma once

#include <string>

#include "gif/block_list.h"
#include "platform/file.h"

enum ReadResult {
    kReadFailed = 0,  // the file can't be opened or read, is broken, or memory has run out
    kReadDone = 1,
    kReadNotGif = 2,  // no "GIF" signature at the start, nor behind a prefix of 128 bytes
};

// How a load ended, for callers that want to tell more than success.
struct ReadReport {
    bool reachedTrailer =
        false;                // false: the file ended, the reader met a byte that starts no block, or left data unread
    bool dataUnread = false;  // of an application block not our own: what follows was taken from within its data
    bool fileEnded = false;   // instead of going on with a block or the trailer
    bool couldNotOpen = false;    // only with kReadFailed
    bool couldNotRead = false;    // only with kReadFailed: the system could not go on reading the file
    bool imageLeftBlank = false;  // there was no memory to decode some image, whose pixels are all of index 0
    std::string reason;           // the system's words for couldNotOpen and couldNotRead
};

// Reads the GIF file at `path` (UTF-8) into `list`, which must come fresh from CreateBlockList. After a failure `list`
// may still hold the blocks read so far: the caller shows or destroys them. `report` may be null.
ReadResult ReadGifFile(BlockList* list, const char* path, ReadReport* report = nullptr);

// As ReadGifFile, from a file that is already open and stands at its start.
ReadResult ReadGif(BlockList* list, File& file, ReadReport* report = nullptr);
