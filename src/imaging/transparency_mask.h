// Which pixels of an image are transparent.
#pragma once

#include "imaging/image_bitmap.h"

// Makes a 1-bit bitmap of the size of `bitmap`, black and white, whose pixel is 0 where the one of `bitmap` equals
// `transparentIndex` (of a 24-bit bitmap: the colour 0x00BBGGRR) and 1 everywhere else. None when memory has run
// out.
[[nodiscard]] MemoryHandle MakeTransparencyMask(ConstLockedBitmap bitmap, uint32_t transparentIndex);
