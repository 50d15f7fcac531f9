// Reading a file in the whole manner: every byte of it has its place in the list.
#pragma once

#include "gif/gif_reader.h"

// Reads what `file` holds from its start, as ReadGif does in the whole manner. The list's blocks then follow each other
// in one block of memory, the file itself: what stands before the header, the blocks (each with the bytes before it
// that start none), and what stands behind the last one.
[[nodiscard]] ReadResult ReadWholeGif(BlockList* list, File& file, ReadReport* report);
