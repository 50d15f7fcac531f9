// Images of 24 bits a pixel.
#pragma once

#include "imaging/image_bitmap.h"

// Makes a bitmap of 24 bits with the colours of `source` (1, 4, 8 or 24 bits). A 1-bit source becomes black and white,
// whatever its own two colours are. None when memory ran out.
[[nodiscard]] MemoryHandle ExpandToTrueColour(const MemoryHandle& source);
