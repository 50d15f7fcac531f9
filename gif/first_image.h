// Importing one picture: the first image of a GIF file.
#pragma once

#include "platform/file.h"
#include "platform/memory.h"
#include "platform/window_handle.h"

// Reads the first image of the GIF file at `path` (UTF-8), or of a file that the user is asked for when `path` is null.
// Returns its bitmap, which the caller owns, and its colour depth (1 to 8) in `depth`; null when there is no image to
// be had: dialog cancelled, file unreadable, not a GIF, broken, without an image, or memory gone.
[[nodiscard]] MemoryHandle ReadFirstImage(WindowHandle owner, const char* path, int* depth);

// As above, from a file that is already open and stands at its start.
[[nodiscard]] MemoryHandle ReadFirstImage(File& file, int* depth);
