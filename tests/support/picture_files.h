// GIF files of one picture.
#pragma once

#include <string>

#include "imaging/image_bitmap.h"

// Writes the bitmap (1, 4 or 8 bits) as the only image of a GIF file. `depth` is that of its palette, at most its bits.
void WritePicture(const std::string& path, const MemoryHandle& image, int depth);
