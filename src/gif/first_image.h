// Importing one picture: the first image of a GIF file.
#pragma once

#include <string>

#include "platform/file.h"
#include "platform/memory.h"
#include "platform/result.h"

struct FirstImage {
    MemoryHandle bitmap;
    int depth = 0;  // of its colours: 1 to 8
};

// Reads the first image of the GIF file at `path` (UTF-8). Fails with kCantRead, kNotGif or kDamaged (cut short,
// broken, without an image or a palette for it, or too large for the memory at hand).
Result<FirstImage> ReadFirstImage(const std::string& path);

// As above, from a file that is already open and stands at its start.
Result<FirstImage> ReadFirstImage(File& file);
